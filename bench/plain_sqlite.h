// A record file read and written with SQLite's own functions and nothing around them, to measure
// the embedded record manager against. The SQLite is the same; the file is a copy, because two
// SQLites in one process do not see each other's locks.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace bench {

// Fails for anything but success, a row or the end of rows.
class PlainStatement {
 public:
  PlainStatement(sqlite3* connection, const char* sql);
  ~PlainStatement();
  PlainStatement(const PlainStatement&) = delete;
  PlainStatement& operator=(const PlainStatement&) = delete;

  void Bind(int parameter, std::span<const std::uint8_t> bytes);
  void Bind(int parameter, std::int64_t value);
  void Bind(int parameter, const std::string& text);
  // False when there are no more rows.
  bool Step();
  void Reset();
  void Run();
  // Copies the column's bytes.
  void Read(int column, std::span<std::uint8_t> target);
  std::int64_t Integer(int column);

 private:
  sqlite3_stmt* handle_ = nullptr;
};

class PlainConnection {
 public:
  explicit PlainConnection(const std::filesystem::path& path);
  ~PlainConnection();
  PlainConnection(const PlainConnection&) = delete;
  PlainConnection& operator=(const PlainConnection&) = delete;

  sqlite3* Handle() const { return handle_; }
  void Execute(const char* sql);

 private:
  sqlite3* handle_ = nullptr;
};

}  // namespace bench
