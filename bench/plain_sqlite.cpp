#include "bench/plain_sqlite.h"

#include <sqlite3.h>

#include <algorithm>
#include <stdexcept>

namespace bench {
namespace {

void Check(int result) {
  if (result == SQLITE_OK || result == SQLITE_ROW || result == SQLITE_DONE) return;
  throw std::runtime_error(std::string("SQLite: ") + sqlite3_errstr(result));
}

}  // namespace

PlainStatement::PlainStatement(sqlite3* connection, const char* sql) {
  Check(sqlite3_prepare_v3(connection, sql, -1, SQLITE_PREPARE_PERSISTENT, &handle_, nullptr));
}

PlainStatement::~PlainStatement() { sqlite3_finalize(handle_); }

void PlainStatement::Bind(int parameter, std::span<const std::uint8_t> bytes) {
  Check(sqlite3_bind_blob(handle_, parameter, bytes.data(), static_cast<int>(bytes.size()),
                          SQLITE_STATIC));
}

void PlainStatement::Bind(int parameter, std::int64_t value) {
  Check(sqlite3_bind_int64(handle_, parameter, value));
}

void PlainStatement::Bind(int parameter, const std::string& text) {
  Check(sqlite3_bind_text(handle_, parameter, text.data(), static_cast<int>(text.size()),
                          SQLITE_TRANSIENT));
}

bool PlainStatement::Step() {
  const int result = sqlite3_step(handle_);
  Check(result);
  return result == SQLITE_ROW;
}

void PlainStatement::Reset() { Check(sqlite3_reset(handle_)); }

void PlainStatement::Run() {
  Step();
  Reset();
}

void PlainStatement::Read(int column, std::span<std::uint8_t> target) {
  const auto* const bytes = static_cast<const std::uint8_t*>(sqlite3_column_blob(handle_, column));
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(handle_, column));
  std::copy_n(bytes, std::min(size, target.size()), target.data());
}

std::int64_t PlainStatement::Integer(int column) { return sqlite3_column_int64(handle_, column); }

PlainConnection::PlainConnection(const std::filesystem::path& path) {
  Check(sqlite3_open_v2(path.c_str(), &handle_,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr));
}

PlainConnection::~PlainConnection() { sqlite3_close_v2(handle_); }

void PlainConnection::Execute(const char* sql) {
  Check(sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr));
}

}  // namespace bench
