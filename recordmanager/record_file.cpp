#include "recordmanager/record_file.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "recordmanager/file_format.h"
#include "recordmanager/leftovers.h"
#include "recordmanager/record_sql.h"

namespace recordmanager {
namespace {

bool IsZero(const std::uint8_t* bytes, std::size_t length) {
  return std::all_of(bytes, bytes + length, [](std::uint8_t byte) { return byte == 0; });
}

// Takes a transaction back at the end of its scope if it is still open then, also for lack of
// memory.
class UnlessCommitted {
 public:
  UnlessCommitted(const Connection& connection, Statement& rollBack)
      : connection_(connection), rollBack_(rollBack) {}
  UnlessCommitted(const UnlessCommitted&) = delete;
  UnlessCommitted& operator=(const UnlessCommitted&) = delete;
  ~UnlessCommitted() {
    if (connection_.IsInTransaction()) rollBack_.Run();
  }

 private:
  const Connection& connection_;
  Statement& rollBack_;
};

}  // namespace

int RecordFile::Open(const std::string& path, bool forReading, MemoryLimit& memory,
                     std::unique_ptr<RecordFile>& file) {
  std::unique_ptr<RecordFile> opened(new RecordFile(memory));
  opened->path_ = path;
  int status = OpenDatabase(path, opened->connection_, opened->layout_, forReading);
  if (status == btrieve::kSuccess) status = opened->Prepare();
  if (status == btrieve::kSuccess) file = std::move(opened);
  return status;
}

int RecordFile::Prepare() {
  reads_.resize(layout_.keys.size());
  readAhead_.SetKeys(layout_.keys.size());
  const std::pair<Statement*, std::string> statements[] = {
      {&begin_, "BEGIN IMMEDIATE"},
      {&commit_, "COMMIT"},
      {&rollBack_, "ROLLBACK"},
      // By its row and without RETURNING: otherwise SQLite prepares to take the statement back,
      // which costs more than all the rest of an insertion into an open transaction.
      {&countChange_, "UPDATE file SET changes = changes + 1 WHERE rowid = 1"},
      {&readChange_, "SELECT changes FROM file WHERE rowid = 1"},
      {&loadEntries_, LoadEntriesSql(layout_)},
      {&insert_, InsertSql(layout_)},
      {&rewrite_, RewriteSql()},
      {&rekey_, RekeySql(layout_)},
      {&delete_, "DELETE FROM record WHERE id = ?1"},
  };
  for (const auto& [statement, sql] : statements) {
    if (const int status = connection_.Prepare(sql, *statement); status != btrieve::kSuccess) {
      return status;
    }
  }
  return btrieve::kSuccess;
}

// Runs `body`, which returns a status, as a transaction of its own or as part of the one that is
// open.
template <typename Body>
int RecordFile::Write(Body body) {
  if (inTransaction_) {
    int status = GivenUp();
    if (status == btrieve::kSuccess) status = Noted(body());
    memory_.Note(*this);
    return status;
  }
  if (const int status = BeginWriting(); status != btrieve::kSuccess) return status;
  const UnlessCommitted takenBack(connection_, rollBack_);
  int status = body();
  if (status == btrieve::kSuccess) status = commit_.Run();
  memory_.Note(*this);
  return status;
}

// Each transaction leads to a state of its own, and tells so first.
int RecordFile::BeginWriting() {
  int status = connection_.IsReplaced() ? btrieve::kFileInUse : btrieve::kSuccess;
  if (status == btrieve::kSuccess && !renewState_.IsPrepared()) {
    // Not earlier, as there are files of the first format that cannot be written.
    status = connection_.Prepare("UPDATE file SET before = state, state = ?1 WHERE rowid = 1",
                                 renewState_);
  }
  if (status == btrieve::kSuccess) {
    status = connection_.IsBusy() ? btrieve::kRecordInUse : begin_.Run();
  }
  if (status != btrieve::kSuccess) return status;
  status = RenewState();
  // Only now there is a journal to number the state by.
  if (status == btrieve::kSuccess && !connection_.IsLogged()) status = RenewState();
  if (status != btrieve::kSuccess && connection_.IsInTransaction()) rollBack_.Run();
  return status;
}

int RecordFile::GivenUp() const {
  if (givenUp_ != btrieve::kSuccess || connection_.IsInTransaction()) return givenUp_;
  return btrieve::kIoError;
}

// Keeps why SQLite gave the transaction up: `status` is what came of a use of the file within it,
// and the first use that finds no transaction any more is the one that cost it.
int RecordFile::Noted(int status) {
  if (inTransaction_ && givenUp_ == btrieve::kSuccess && !connection_.IsInTransaction()) {
    givenUp_ = status;
    // What it wrote is taken back already, and nothing that is read from now on is its own.
    ++transaction_;
    ChangeBefore(transaction_) = INT64_MAX;
  }
  return status;
}

int RecordFile::RenewState() {
  const StateNumber state = NumberState(connection_);
  return renewState_.Bind(1, state).Run();
}

int RecordFile::NextChange(std::int64_t& change) {
  const int status = countChange_.Run();
  return status == btrieve::kSuccess ? ReadChange(change) : status;
}

int RecordFile::ReadChange(std::int64_t& change) {
  const StatementUse use(readChange_);
  const int status = readChange_.StepToRow();
  change = readChange_.Integer(0);
  return status;
}

RecordVersion RecordFile::VersionOf(std::int64_t id, std::int64_t version) const {
  const bool isUncertain = inTransaction_ && version > ChangeBefore(transaction_);
  return {id, version, isUncertain ? transaction_ : 0};
}

bool RecordFile::IsTakenBack(const RecordVersion& version) const {
  if (version.transaction == 0 || version.transaction == transaction_) return false;
  return !IsKnown(version.transaction) || version.version > ChangeBefore(version.transaction);
}

int RecordFile::NumberRecord(std::span<std::uint8_t> record) {
  for (const Key& key : layout_.keys) {
    std::uint8_t* field = key.In(record.data());
    if (!key.IsAutoincrement() || !IsZero(field, key.Length())) continue;
    Entry highest;
    RecordVersion ignored;
    std::vector<std::uint8_t> other(record.size());
    const int status = Read(key, {Bound::kUpTo, Entry::AfterAll(), {}}, other, ignored, highest);
    if (status != btrieve::kSuccess && status != btrieve::kEndOfFile) return status;
    if (!key.StoreNext(highest, field)) {
      return btrieve::kDuplicateKey;  // the published status when all numbers are used up
    }
  }
  return btrieve::kSuccess;
}

int RecordFile::StoreRecord(Statement& statement, std::int64_t change, std::int64_t id,
                            std::span<const std::uint8_t> record,
                            const std::vector<Entry>& entries) {
  statement.Bind(1, change).Bind(2, id).Bind(3, record);
  int parameter = 4;
  for (const Entry& entry : entries) statement.Bind(parameter++, entry);
  return statement.Run();
}

int RecordFile::Insert(std::span<std::uint8_t> record, RecordVersion& version,
                       std::vector<Entry>& entries) {
  return Write([&] {
    int status = NumberRecord(record);
    std::int64_t change = 0;
    if (status == btrieve::kSuccess) status = NextChange(change);
    if (status != btrieve::kSuccess) return status;
    entries.clear();
    for (const Key& key : layout_.keys) {
      entries.push_back(key.Make(key.In(record.data()), static_cast<std::uint64_t>(change)));
    }
    version = VersionOf(change, change);
    return StoreRecord(insert_, change, change, record, entries);
  });
}

// The entries of the record as it was read.
int RecordFile::LoadEntries(const RecordVersion& version, std::vector<Entry>& entries) {
  const StatementUse use(loadEntries_);
  const int status = loadEntries_.Bind(1, version.id).Step();
  if (status != btrieve::kSuccess && status != btrieve::kEndOfFile) return status;
  if (status == btrieve::kEndOfFile || loadEntries_.Integer(0) != version.version ||
      IsTakenBack(version)) {
    return btrieve::kConflict;
  }
  entries.clear();
  for (std::size_t i = 0; i < layout_.keys.size(); ++i) {
    const auto entry = loadEntries_.Bytes(static_cast<int>(i) + 1);
    entries.push_back(Entry::From(entry.data(), entry.size()));
  }
  return btrieve::kSuccess;
}

int RecordFile::Update(std::span<const std::uint8_t> record, RecordVersion& version,
                       std::vector<Entry>& entries) {
  return Write([&]() -> int {
    int status = LoadEntries(version, entries);
    std::int64_t change = 0;
    if (status == btrieve::kSuccess) status = NextChange(change);
    if (status != btrieve::kSuccess) return status;
    bool rekeyed = false;
    for (const Key& key : layout_.keys) {
      Entry& entry = entries[IndexOf(key)];
      const std::uint8_t* value = key.In(record.data());
      if (key.Matches(entry, value)) continue;
      if (!key.IsModifiable()) return btrieve::kModifiableKey;
      entry = key.Make(value, static_cast<std::uint64_t>(change));
      rekeyed = true;
    }
    version = VersionOf(version.id, change);
    // SQLite would write every key's index anew, though no value of it has changed.
    return rekeyed ? StoreRecord(rekey_, change, version.id, record, entries)
                   : StoreRecord(rewrite_, change, version.id, record, {});
  });
}

int RecordFile::Delete(const RecordVersion& version) {
  return Write([&] {
    std::vector<Entry> entries;
    const int status = LoadEntries(version, entries);
    return status == btrieve::kSuccess ? delete_.Bind(1, version.id).Run() : status;
  });
}

int RecordFile::Begin() {
  if (inTransaction_) return btrieve::kSuccess;
  if (const int status = BeginWriting(); status != btrieve::kSuccess) return status;
  std::int64_t before = 0;
  if (const int status = ReadChange(before); status != btrieve::kSuccess) {
    rollBack_.Run();
    return status;
  }
  inTransaction_ = true;
  givenUp_ = btrieve::kSuccess;
  ChangeBefore(transaction_) = before;
  return btrieve::kSuccess;
}

int RecordFile::Commit() {
  if (!inTransaction_) return btrieve::kSuccess;
  int status = GivenUp();
  if (status == btrieve::kSuccess) status = commit_.Run();
  memory_.Note(*this);
  if (status == btrieve::kSuccess) {
    inTransaction_ = false;
  } else {
    RollBack();
  }
  return status;
}

void RecordFile::RollBack() {
  if (!inTransaction_) return;
  const UnlessCommitted takenBack(connection_, rollBack_);
  inTransaction_ = false;
  leftLog_ = true;
  ++transaction_;
}

void RecordFile::BecomeParents() {
  connection_.EndMark();
  memory_.Remove(*this);
  if (inTransaction_) ++transaction_;
  inTransaction_ = false;
}

void RecordFile::ForgetRecords() {
  readAhead_.Forget();
  connection_.ForgetPages();
}

void RecordFile::Settle() {
  if (inTransaction_ || !(leftLog_ || connection_.HasLogToMove())) return;
  try {
    leftLog_ = !connection_.Checkpoint();
  } catch (const std::bad_alloc&) {
    leftLog_ = true;  // nothing that was asked for has failed
  }
}

}  // namespace recordmanager
