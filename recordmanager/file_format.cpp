#include "recordmanager/file_format.h"

#include <chrono>
#include <new>

#include "recordmanager/host_files.h"
#include "recordmanager/leftovers.h"
#include "recordmanager/record_sql.h"

namespace recordmanager {
namespace {

// Tell a record file from any other database, and its format from later ones.
constexpr std::int64_t kApplicationId = 0x4B524543;
constexpr std::int64_t kFormatVersion = 2;

std::string MarksSql() {
  return "PRAGMA application_id = " + std::to_string(kApplicationId) +
         "; PRAGMA user_version = " + std::to_string(kFormatVersion) + ";";
}

int StoreDescription(Connection& connection, const RecordLayout& layout) {
  Statement statement;
  const int status = connection.Prepare("INSERT INTO file VALUES(?1, 0, ?2, ?2)", statement);
  if (status != btrieve::kSuccess) return status;
  const auto description = DescribeLayout(layout);
  const StateNumber state = NumberState(connection);
  return statement.Bind(1, description).Bind(2, state).Run();
}

int BuildDatabase(const std::string& path, const RecordLayout& layout) {
  Connection connection;
  int status = connection.Open(path, Connection::Way::kNew);
  if (status == btrieve::kSuccess) {
    // Nobody goes on with a draft, and a journal would stay when somebody has it open.
    status = connection.Execute("PRAGMA journal_mode = MEMORY; BEGIN");
  }
  if (status == btrieve::kSuccess) {
    status = connection.Execute((MarksSql() + SchemaSql(layout)).c_str());
  }
  if (status == btrieve::kSuccess) status = StoreDescription(connection, layout);
  if (status == btrieve::kSuccess) status = connection.Execute("COMMIT");
  if (status == btrieve::kSuccess && IsOnLocalDisk(path)) {
    status = connection.Execute("PRAGMA journal_mode = WAL");
  }
  return status;
}

// A log or a draft that could not be made may have lacked room rather than rights.
int Refine(int status, const std::string& path) {
  return status == btrieve::kPermissionError && HasNoRoomBeside(path) ? btrieve::kDiskFull : status;
}

// Short, as a name has room for little more than the longest ending that SQLite adds to it.
std::string UnusedNameBeside(const std::string& path) {
  return path.substr(0, path.find_last_of("/\\") + 1) + "new-" + std::to_string(RandomNumber());
}

// Leaves alone the log of a former file of that name: the first program to open the new file
// removes it (leftovers.h), and that may be happening at this moment.
int MoveIntoPlace(const std::string& from, const std::string& to, bool replace) {
  MoveResult result = MoveFileTo(from, to);
  if (result == MoveResult::kTargetExists && replace) result = ReplaceFile(from, to);
  switch (result) {
    case MoveResult::kDone:
      return btrieve::kSuccess;
    case MoveResult::kTargetExists:
      return btrieve::kFileExists;
    case MoveResult::kTargetInUse:
      return btrieve::kFileInUse;
    case MoveResult::kInvalidName:
      return btrieve::kInvalidFileName;
    default:
      return btrieve::kPermissionError;
  }
}

int CheckMarks(Connection& connection, std::int64_t& version) {
  std::int64_t application = 0;
  int status = connection.QueryInteger("PRAGMA application_id", application);
  if (status == btrieve::kSuccess) status = connection.QueryInteger("PRAGMA user_version", version);
  if (status == btrieve::kSuccess &&
      (application != kApplicationId || version < 1 || version > kFormatVersion)) {
    return btrieve::kNotARecordFile;
  }
  return status;
}

int AddStates(Connection& connection) {
  // The page of the states is the first to change, as in each transaction.
  const int status = connection.Execute(
      "UPDATE file SET changes = changes + 1;"
      "ALTER TABLE file ADD COLUMN state BLOB NOT NULL DEFAULT x'0000000000000000';"
      "ALTER TABLE file ADD COLUMN before BLOB NOT NULL DEFAULT x'0000000000000000';"
      "PRAGMA user_version = 2");
  if (status != btrieve::kSuccess) return status;
  const StateNumber state = NumberState(connection);
  Statement statement;
  const int prepared = connection.Prepare("UPDATE file SET state = ?1", statement);
  return prepared == btrieve::kSuccess ? statement.Bind(1, state).Run() : prepared;
}

// The first format had no states.
int ToSecondFormat(Connection& connection) {
  int status = connection.Execute("BEGIN IMMEDIATE");
  std::int64_t version = 0;
  if (status == btrieve::kSuccess) status = connection.QueryInteger("PRAGMA user_version", version);
  if (status == btrieve::kSuccess && version == 1) status = AddStates(connection);
  return status == btrieve::kSuccess ? connection.Execute("COMMIT") : status;
}

// WAL is the file's own mode, set at its creation. It is taken back where it cannot work, and never
// set again: a file on a share may have users on its own machine as well, and all must use the
// same.
int SetJournal(const std::string& path, Connection& connection) {
  std::string mode;
  int status = connection.QueryText("PRAGMA journal_mode", mode);
  if (status == btrieve::kSuccess && mode == "wal" && IsOnLocalDisk(path)) {
    connection.SetLogged();
    // If a scanner had the log's shared memory open while SQLite opened it, SQLite fell back to
    // reading, and each write would fail for as long as the file is open.
    if (!connection.IsReadOnly() && AccessTo(path + "-shm", true) != Access::kImpossible &&
        connection.IsLogReadOnly()) {
      return btrieve::kPermissionError;
    }
  } else if (status == btrieve::kSuccess) {
    status = connection.QueryText("PRAGMA journal_mode = TRUNCATE", mode);
    if (status == btrieve::kSuccess && mode != "truncate") return btrieve::kFileInUse;
    // What a transaction has changed goes to the file early only if the cache has no room for it,
    // not for lack of memory: from then on, nobody can read the file.
    if (status == btrieve::kSuccess) status = connection.Execute("PRAGMA cache_spill = -2048");
  }
  return status;
}

int ReadLayout(Connection& connection, RecordLayout& layout) {
  Statement statement;
  int status = connection.Prepare("SELECT description FROM file", statement);
  if (status != btrieve::kSuccess) return status;
  status = statement.StepToRow();
  if (status != btrieve::kSuccess) return status;
  status = ParseLayout(statement.Bytes(0), layout);
  return status == btrieve::kSuccess ? status : btrieve::kIoError;
}

int OpenOnce(const std::string& path, Connection& connection, RecordLayout& layout,
             bool forReading) {
  int status = connection.Open(path, Connection::Way::kExisting);
  if (status == btrieve::kSuccess) status = CheckLeftovers(connection);
  const bool isUnchanging = status == btrieve::kSuccess && LacksLog(connection) &&
                            (connection.IsReadOnly() || (forReading && !CanMakeFilesBeside(path)));
  if (isUnchanging) status = connection.Open(path, Connection::Way::kUnchanging);
  if (isUnchanging && status == btrieve::kSuccess) status = NoteState(connection);
  std::int64_t version = 0;
  if (status == btrieve::kSuccess) status = CheckMarks(connection, version);
  if (status == btrieve::kSuccess && !isUnchanging) status = SetJournal(path, connection);
  if (status == btrieve::kSuccess) {
    // FULL is what survives a loss of power in both modes. The cache has room for the pages above
    // the records of a large file, and for some cases' own; there are half a dozen such files in a
    // host.
    status = connection.Execute("PRAGMA synchronous = FULL; PRAGMA cache_size = -2048");
  }
  if (status == btrieve::kSuccess && version == 1 && !connection.IsReadOnly()) {
    status = ToSecondFormat(connection);
  }
  if (status == btrieve::kSuccess) status = ReadLayout(connection, layout);
  return status == btrieve::kRecordInUse ? btrieve::kFileInUse : status;
}

}  // namespace

int CreateRecordFile(const std::string& path, const RecordLayout& layout, bool replace) {
  if (replace && IsInUse(path)) return btrieve::kFileInUse;  // without a draft for each try
  const std::string beside = UnusedNameBeside(path);
  int status = btrieve::kSuccess;
  try {
    status = BuildDatabase(beside, layout);
    if (status == btrieve::kSuccess) status = MoveIntoPlace(beside, path, replace);
  } catch (const std::bad_alloc&) {
    status = btrieve::kOutOfMemory;
  }
  if (status != btrieve::kSuccess) RemoveFile(beside);
  return Refine(status, path);
}

int OpenDatabase(const std::string& path, Connection& connection, RecordLayout& layout,
                 bool forReading) {
  // SQLite opens the log's shared memory without waiting for a program that has it open.
  constexpr auto kMoment = std::chrono::seconds(1);
  // A reader that can make no log of its own meets the logs of others as they come and go.
  constexpr int kLooks = 20;
  const auto start = Clock::now();
  int status = OpenOnce(path, connection, layout, forReading);
  for (int look = 1; status == btrieve::kPermissionError; ++look) {
    if (!connection.IsReadOnly() && CanMakeFilesBeside(path)) {
      if (Clock::now() - start >= kMoment) break;
    } else {
      if (!forReading || look == kLooks) break;
      PauseBriefly();
    }
    status = OpenOnce(path, connection, layout, forReading);
  }
  if (status == btrieve::kFileInUse) connection.GiveUp();
  return Refine(status, path);
}

}  // namespace recordmanager
