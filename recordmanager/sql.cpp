#include "recordmanager/sql.h"

#include <sqlite3.h>

#include <utility>

#include "recordmanager/host_files.h"
#include "recordmanager/patient_files.h"

namespace recordmanager {
namespace {

// The path as SQLite takes it with options.
std::string UriOf(const std::string& path, const char* options) {
  std::string uri = path.starts_with('/') ? "file://" : "file:";
  for (const char letter : path) {
    const bool isReserved = letter == '%' || letter == '?' || letter == '#';
    constexpr const char* kDigits = "0123456789ABCDEF";
    if (isReserved) {
      uri.append({'%', kDigits[letter >> 4], kDigits[letter & 0xF]});
    } else {
      uri += letter;
    }
  }
  return uri + options;
}

}  // namespace

int StatusOf(int sqliteCode) {
  if (sqliteCode == SQLITE_CONSTRAINT_UNIQUE) return btrieve::kDuplicateKey;
  if (sqliteCode == SQLITE_IOERR_SHMSIZE) {  // no room for the memory that users of a log share
    return btrieve::kDiskFull;
  }
  if (sqliteCode == SQLITE_IOERR_SHMMAP && AreAddressesUsedUp()) return btrieve::kOutOfMemory;
  switch (sqliteCode & 0xFF) {  // the rest of an extended code tells apart what has one status
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return btrieve::kSuccess;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
      return btrieve::kRecordInUse;
    case SQLITE_FULL:
      return btrieve::kDiskFull;
    case SQLITE_NOMEM:
      return btrieve::kOutOfMemory;
    case SQLITE_NOTADB:
      return btrieve::kNotARecordFile;
    case SQLITE_CANTOPEN:  // whoever opens has seen that the file is there
      return AreFileHandlesUsedUp() ? btrieve::kFileTableFull : btrieve::kPermissionError;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return btrieve::kPermissionError;
    default:
      return btrieve::kIoError;
  }
}

std::uint32_t RandomNumber() {
  std::uint32_t number = 0;
  sqlite3_randomness(sizeof(number), &number);
  return number;
}

Statement& Statement::operator=(Statement other) noexcept {
  std::swap(handle_, other.handle_);
  return *this;
}

Statement::~Statement() { sqlite3_finalize(handle_); }

Statement& Statement::Bind(int parameter, std::int64_t value) {
  sqlite3_bind_int64(handle_, parameter, value);
  return *this;
}

Statement& Statement::Bind(int parameter, std::span<const std::uint8_t> bytes) {
  sqlite3_bind_blob(handle_, parameter, bytes.data(), static_cast<int>(bytes.size()),
                    SQLITE_STATIC);
  return *this;
}

Statement& Statement::Bind(int parameter, const Entry& entry) {
  return Bind(parameter, std::span(entry.bytes).first(entry.size));
}

int Statement::Step() {
  const int result = sqlite3_step(handle_);
  return result == SQLITE_DONE ? btrieve::kEndOfFile : StatusOf(result);
}

int Statement::StepToRow() {
  const int status = Step();
  return status == btrieve::kEndOfFile ? btrieve::kIoError : status;
}

int Statement::Run() {
  const StatementUse use(*this);
  const int status = Step();
  return status == btrieve::kEndOfFile ? btrieve::kSuccess : status;
}

void Statement::Reset() { sqlite3_reset(handle_); }

std::int64_t Statement::Integer(int column) { return sqlite3_column_int64(handle_, column); }

std::span<const std::uint8_t> Statement::Bytes(int column) {
  const void* bytes = sqlite3_column_blob(handle_, column);
  const int size = sqlite3_column_bytes(handle_, column);
  return {static_cast<const std::uint8_t*>(bytes), bytes == nullptr ? 0U : std::size_t(size)};
}

Connection::~Connection() { sqlite3_close_v2(handle_); }

int Connection::Open(const std::string& path, Way way) {
  patience_ = Patience(path);
  if (patience_.IsSpent()) return btrieve::kRecordInUse;
  // One lock around the whole record manager makes SQLite's own around each connection needless.
  int flags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
  flags |= way == Way::kUnchanging ? SQLITE_OPEN_READONLY | SQLITE_OPEN_URI : SQLITE_OPEN_READWRITE;
  if (way == Way::kNew) flags |= SQLITE_OPEN_CREATE;
  const std::string name = way == Way::kUnchanging ? UriOf(path, "?immutable=1") : path;
  sqlite3_close_v2(std::exchange(handle_, nullptr));
  unchanging_ = way == Way::kUnchanging;
  logged_ = false;
  logIndex_ = nullptr;
  useMark_.End();
  const char* const files = PatientFiles();
  if (files == nullptr) return btrieve::kOutOfMemory;  // SQLite would take its own instead
  const int result = sqlite3_open_v2(name.c_str(), &handle_, flags, files);
  if (handle_ != nullptr) {  // as it is for lack of memory
    sqlite3_busy_handler(handle_, &Connection::WaitForLock, this);
  }
  const bool isReplaced = result == SQLITE_OK && way != Way::kNew && !MarkUse();
  if (!isReplaced) return StatusOf(result);
  return AreFileHandlesUsedUp() ? btrieve::kFileTableFull : btrieve::kRecordInUse;
}

// False when the file is just being replaced, or was since it was opened: what lies beside it
// belongs to the other one then. And when there is no handle left for the mark.
bool Connection::MarkUse() {
  int hasMoved = 0;
  if (!useMark_.Set(sqlite3_db_filename(handle_, "main"))) return false;
  const int result = sqlite3_file_control(handle_, "main", SQLITE_FCNTL_HAS_MOVED, &hasMoved);
  return result != SQLITE_OK || hasMoved == 0;
}

bool Connection::IsReadOnly() const {
  return handle_ == nullptr || sqlite3_db_readonly(handle_, "main") != 0;
}

bool Connection::IsLogReadOnly() {
  sqlite3_busy_handler(handle_, nullptr, nullptr);
  const int result = sqlite3_exec(handle_, "BEGIN IMMEDIATE; ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_busy_handler(handle_, &Connection::WaitForLock, this);
  return (result & 0xFF) == SQLITE_READONLY;
}

bool Connection::IsInTransaction() const { return sqlite3_get_autocommit(handle_) == 0; }

// The log's index begins with a header of 48 bytes, which every change to the file rewrites, with a
// counter and checksums in it (SQLite's documentation of the WAL-index format).
LogState Connection::ReadLogState() {
  LogState state{};
  if (logIndex_ == nullptr && logged_) FindLogIndex();
  if (logIndex_ == nullptr) return state;
  const auto* words = logIndex_;
  for (std::uint32_t& word : state) word = *words++;
  return state;
}

// It stays where it is as long as the file is open.
void Connection::FindLogIndex() {
  constexpr int kIndexRegion = 32768;
  sqlite3_file* file = nullptr;
  if (sqlite3_file_control(handle_, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK ||
      file->pMethods == nullptr || file->pMethods->iVersion < 2) {
    return;
  }
  void volatile* index = nullptr;
  if (file->pMethods->xShmMap(file, 0, kIndexRegion, 0, &index) == SQLITE_OK) {
    logIndex_ = static_cast<volatile const std::uint32_t*>(index);
  }
}

bool Connection::IsReplaced() const {
  int hasMoved = 0;
  return sqlite3_file_control(handle_, "main", SQLITE_FCNTL_HAS_MOVED, &hasMoved) == SQLITE_OK &&
         hasMoved != 0 &&
         InspectFile(sqlite3_db_filename(handle_, "main")).kind != FileKind::kMissing;
}

bool Connection::HasLogToMove() {
  constexpr std::size_t kPagesInLog = 4;
  return ReadLogState()[kPagesInLog] != 0;
}

int Connection::Prepare(const std::string& sql, Statement& statement) {
  Statement prepared;
  const int result = sqlite3_prepare_v3(handle_, sql.c_str(), static_cast<int>(sql.size()) + 1,
                                        SQLITE_PREPARE_PERSISTENT, &prepared.handle_, nullptr);
  statement = std::move(prepared);
  return StatusOf(result);
}

int Connection::Execute(const char* sql) {
  return StatusOf(sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr));
}

int Connection::QueryInteger(const char* sql, std::int64_t& value) {
  Statement statement;
  if (const int status = Prepare(sql, statement); status != btrieve::kSuccess) return status;
  const int status = statement.StepToRow();
  value = statement.Integer(0);
  return status;
}

int Connection::QueryText(const char* sql, std::string& text) {
  Statement statement;
  if (const int status = Prepare(sql, statement); status != btrieve::kSuccess) return status;
  const int status = statement.StepToRow();
  const auto bytes = statement.Bytes(0);
  text.assign(bytes.begin(), bytes.end());
  return status;
}

void Connection::ForgetPages() {
  if (handle_ == nullptr) return;
  // A rollback journal's users would find the file locked until the transaction ends.
  if (logged_) sqlite3_db_cacheflush(handle_);
  sqlite3_db_release_memory(handle_);
}

std::size_t Connection::PageBytes() const {
  if (handle_ == nullptr) return 0;
  int bytes = 0;
  int ignored = 0;
  sqlite3_db_status(handle_, SQLITE_DBSTATUS_CACHE_USED, &bytes, &ignored, 0);
  return static_cast<std::size_t>(bytes);
}

bool Connection::Checkpoint() {
  if (IsReplaced()) return false;
  sqlite3_busy_handler(handle_, nullptr, nullptr);
  const int result =
      sqlite3_wal_checkpoint_v2(handle_, nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
  sqlite3_busy_handler(handle_, &Connection::WaitForLock, this);
  return result == SQLITE_OK;
}

int Connection::WaitForLock(void* connection, int attempt) {
  Patience& patience = static_cast<Connection*>(connection)->patience_;
  if (attempt == 0) patience.Begin();
  return patience.Lasts() ? 1 : 0;
}

}  // namespace recordmanager
