// SQLite, as far as the record manager needs it: one connection, prepared statements, and statuses
// for its errors.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "recordmanager/host_files.h"
#include "recordmanager/key.h"
#include "recordmanager/patience.h"

struct sqlite3;
struct sqlite3_stmt;

namespace recordmanager {

// The published status for a result code of SQLite.
int StatusOf(int sqliteCode);

std::uint32_t RandomNumber();

// The state of a log, as its shared memory tells it. It differs after each change.
using LogState = std::array<std::uint32_t, 12>;

// Tells a state of a file from any other (leftovers.h).
using StateNumber = std::array<std::uint8_t, 8>;

// A prepared statement. Bound bytes must stay where they are until the run ends.
class Statement {
 public:
  Statement() = default;
  Statement(Statement&& other) noexcept : handle_(other.handle_) { other.handle_ = nullptr; }
  Statement& operator=(Statement other) noexcept;
  Statement(const Statement&) = delete;
  ~Statement();

  bool IsPrepared() const { return handle_ != nullptr; }

  Statement& Bind(int parameter, std::int64_t value);
  Statement& Bind(int parameter, std::span<const std::uint8_t> bytes);
  Statement& Bind(int parameter, const Entry& entry);

  // Runs to the next row and returns a status; kEndOfFile behind the last one.
  int Step();
  // Runs to a row that must be there; a file without it is damaged.
  int StepToRow();
  // Runs a statement without rows to its end and returns a status.
  int Run();
  // Ends the run, and with it the locks it holds.
  void Reset();

  std::int64_t Integer(int column);
  // Valid until the next step or reset; empty for NULL.
  std::span<const std::uint8_t> Bytes(int column);

 private:
  friend class Connection;
  sqlite3_stmt* handle_ = nullptr;
};

// Resets a statement when its use ends, so that no read lock outlives a call.
class StatementUse {
 public:
  explicit StatementUse(Statement& statement) : statement_(statement) {}
  StatementUse(const StatementUse&) = delete;
  StatementUse& operator=(const StatementUse&) = delete;
  ~StatementUse() { statement_.Reset(); }

 private:
  Statement& statement_;
};

class Connection {
 public:
  // kUnchanging: without locks and a log, as if nobody wrote the file while it is open.
  enum class Way { kExisting, kNew, kUnchanging };

  Connection() = default;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  // `path` is UTF-8 in the host's own notation. A file that cannot be written is opened for
  // reading. An existing file is not read yet, so success does not mean that it is a database; but
  // nobody replaces it any more. What was open before is closed.
  int Open(const std::string& path, Way way);
  bool IsReadOnly() const;

  // Whether the file is read as if nobody wrote to it, and its state when it was opened so.
  bool IsUnchanging() const { return unchanging_; }
  const StateNumber& StateOpened() const { return stateOpened_; }
  void SetStateOpened(const StateNumber& state) { stateOpened_ = state; }
  sqlite3* Handle() const { return handle_; }
  bool IsInTransaction() const;

  // Whether the file is in WAL mode. Said by whoever has opened it: it stays so as long as it is
  // open.
  bool IsLogged() const { return logged_; }
  void SetLogged() { logged_ = true; }

  // Whether the log of a file in WAL mode can only be read; asked without waiting for anybody.
  bool IsLogReadOnly();

  // To be called in a process that is a copy of the one that has the file open: keeps nobody from
  // replacing it.
  void EndMark() { useMark_.End(); }

  // Whether others had the file locked just now, and waiting for them was in vain.
  bool IsBusy() const { return patience_.IsSpent(); }

  // Says that others keep the file from being opened.
  void GiveUp() const { patience_.GiveUp(); }

  // The log's state; all zero if it is unknown: without a log, or before the first read.
  LogState ReadLogState();

  // Whether another file has taken this one's place, and with it what lies beside: the log.
  bool IsReplaced() const;

  // Whether the log holds changes that somebody still has to move into the file.
  bool HasLogToMove();

  int Prepare(const std::string& sql, Statement& statement);
  int Execute(const char* sql);
  // The first column of the first row; fails also when there is none.
  int QueryInteger(const char* sql, std::int64_t& value);
  int QueryText(const char* sql, std::string& text);

  // Gives back the memory of all pages that are not in use; and how much all take. What a
  // transaction has changed goes to the log before; without a log it stays.
  void ForgetPages();
  std::size_t PageBytes() const;

  // Moves what the log (in WAL mode) holds into the file and empties the log. False when others are
  // using it just now, or the file was replaced.
  bool Checkpoint();

 private:
  bool MarkUse();
  void FindLogIndex();

  // SQLite's busy handler: whether to try again.
  static int WaitForLock(void* connection, int attempt);

  UseMark useMark_;  // outlives what it marks
  sqlite3* handle_ = nullptr;
  bool unchanging_ = false;
  StateNumber stateOpened_{};
  bool logged_ = false;
  volatile const std::uint32_t* logIndex_ = nullptr;
  Patience patience_;
};

}  // namespace recordmanager
