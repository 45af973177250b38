// The part of a record file that reads.
#include <algorithm>
#include <cstring>

#include "recordmanager/file_format.h"
#include "recordmanager/leftovers.h"
#include "recordmanager/record_file.h"
#include "recordmanager/record_sql.h"

namespace recordmanager {
namespace {

// While others come and go, a file that is open as an unchanging one changes between two looks at
// it.
constexpr int kLooks = 20;

Direction DirectionOf(Bound bound) {
  return bound == Bound::kUpTo || bound == Bound::kBefore ? Direction::kDown : Direction::kUp;
}

Purpose PurposeOf(const Key& key, const Search& search) {
  if (search.isStep) return Purpose::kStep;
  const bool isOnlyOne = search.bound == Bound::kWithin && !key.AllowsDuplicates();
  return isOnlyOne ? Purpose::kLookUp : Purpose::kSearch;
}

}  // namespace

// Runs `body`, which reads and returns a status. A reader that can make no log reads the file as if
// nobody wrote to it, and checks afterwards that nobody did. If somebody did, it opens the file
// again, this time with the writer's log, and reads once more. Who may not write a log is told
// status 94 also when it is just being written, and looks again, too.
template <typename Body>
int RecordFile::ReadWhatIs(Body body) {
  int status = btrieve::kSuccess;
  for (int look = 0; look < kLooks; ++look) {
    if (look != 0) PauseBriefly();
    if (isStale_) status = Reopen();
    if (isStale_) continue;
    status = Noted(body());
    isStale_ = connection_.IsUnchanging() && !IsUnchanged(connection_);
    if (isStale_) {
      status = btrieve::kRecordInUse;
    } else if (status != btrieve::kPermissionError) {
      return status;
    }
  }
  return status;
}

// Cursors keep their positions.
int RecordFile::Reopen() {
  RecordLayout same;
  reads_.clear();
  readAhead_.Forget();
  int status = OpenDatabase(path_, connection_, same, true);
  if (status == btrieve::kSuccess) status = Prepare();
  isStale_ = status != btrieve::kSuccess;
  return status;
}

int RecordFile::PrepareRead(const Key& key, Direction direction, Statement*& read) {
  read = &reads_[IndexOf(key)][static_cast<std::size_t>(direction)];
  if (read->IsPrepared()) return btrieve::kSuccess;
  return connection_.Prepare(ReadSql(key, direction), *read);
}

int RecordFile::Read(const Key& key, const Search& search, std::span<std::uint8_t> target,
                     RecordVersion& version, Entry& entry) {
  KeyedRecord record;
  const int status = ReadWhatIs([&] { return Find(key, search, record); });
  if (status != btrieve::kSuccess) return status;
  if (search.bound == Bound::kWithin && search.last < record.entry) return btrieve::kEndOfFile;
  if (target.size() < record.data.size()) return btrieve::kDataBufferLength;
  std::memcpy(target.data(), record.data.data(), record.data.size());
  version = VersionOf(record.id, record.version);
  entry = record.entry;
  return btrieve::kSuccess;
}

// The numbers that a transaction gave to entries are given again when it has been taken back. Those
// that have them now have come later.
Search RecordFile::StepFrom(const Key& key, Bound bound, const Entry& entry,
                            const RecordVersion& version) const {
  if (!key.AllowsDuplicates() || !IsTakenBack(version) || !IsKnown(version.transaction)) {
    return {bound, entry, {}, true};
  }
  const auto next = static_cast<std::uint64_t>(ChangeBefore(version.transaction)) + 1;
  const Entry first = key.WithSequence(entry, next);
  if (entry < first) return {bound, entry, {}, true};  // it was there before
  return {bound == Bound::kAfter ? Bound::kFrom : bound, first, {}, true};
}

// The first record that lies as the search says, but for its end: from memory or from the file.
int RecordFile::Find(const Key& key, const Search& search, KeyedRecord& record) {
  using Answer = ReadAhead::Answer;
  const Direction direction = DirectionOf(search.bound);
  const Cut start{search.first, search.bound == Bound::kAfter || search.bound == Bound::kUpTo};
  const Purpose purpose = PurposeOf(key, search);
  Cut cut = start;
  Look();
  const Answer answer = readAhead_.Find(IndexOf(key), cut, direction, purpose, record);
  if (answer != Answer::kUnknown) {
    return answer == Answer::kFound ? btrieve::kSuccess : btrieve::kEndOfFile;
  }
  int status = ReadFrom(key, search, cut, purpose, record);
  // If somebody has written meanwhile, what was known up to the cut is of another state than what
  // has been read behind it, and a record that has moved would be in neither.
  if (cut != start && !Look()) status = ReadFrom(key, search, start, purpose, record);
  memory_.Note(*this);
  return status;
}

// False when what was known is void.
bool RecordFile::Look() {
  // A transaction reads what it has written itself, of which the log does not tell yet.
  return readAhead_.LookAt(connection_.IsInTransaction() ? LogState{} : connection_.ReadLogState());
}

// The first record from the cut on; for a walk, read together with those behind it.
int RecordFile::ReadFrom(const Key& key, const Search& search, const Cut& cut, Purpose purpose,
                         KeyedRecord& record) {
  const Direction direction = DirectionOf(search.bound);
  RecordBlock& block = readAhead_.Begin(IndexOf(key), cut, direction, purpose);
  const std::size_t most = readAhead_.CountToRead(layout_.RecordLength());
  const int status = ReadBlock(key, search, cut, most, block);
  if (status != btrieve::kSuccess) return status;
  readAhead_.Keep();
  if (block.Count() == 0) return btrieve::kEndOfFile;
  record = block.At(direction == Direction::kUp ? 0 : block.Count() - 1);
  return btrieve::kSuccess;
}

// Reads the records from the cut on: as many as asked for, to the key's end, or to the first one
// behind the value that the search begins at. What is amiss behind the first is left to the read
// that asks for it.
int RecordFile::ReadBlock(const Key& key, const Search& search, const Cut& cut, std::size_t most,
                          RecordBlock& block) {
  Statement* read = nullptr;
  const Direction direction = DirectionOf(search.bound);
  if (const int status = PrepareRead(key, direction, read); status != btrieve::kSuccess) {
    return status;
  }
  std::array<std::uint8_t, Entry::kCapacity + 1> bound{};  // a zero byte more is the next greater
  std::copy_n(cut.entry.bytes.begin(), cut.entry.size, bound.begin());
  const StatementUse use(*read);
  read->Bind(1, std::span(bound).first(cut.entry.size + (cut.behind ? 1U : 0U)));
  int status = btrieve::kSuccess;
  bool goesOn = true;
  for (bool inValue = search.bound == Bound::kWithin; goesOn && block.Count() < most;) {
    status = read->Step();
    if (status != btrieve::kSuccess) break;
    KeyedRecord record;
    if (!TakeRow(*read, record) || !block.Add(record)) {
      status = btrieve::kIoError;
      break;
    }
    const bool hasValue = key.HaveSameValue(search.first, record.entry);
    goesOn = hasValue || !inValue;
    inValue = inValue || hasValue;
  }
  const bool atEnd = status == btrieve::kEndOfFile;
  block.Close(atEnd);
  return atEnd || block.Count() != 0 ? btrieve::kSuccess : status;
}

bool RecordFile::TakeRow(Statement& row, KeyedRecord& record) const {
  const auto entry = row.Bytes(2);
  record = {Entry::From(entry.data(), entry.size()), row.Integer(0), row.Integer(1), row.Bytes(3)};
  return record.data.size() == layout_.RecordLength();
}

int RecordFile::Count(const char* sql, std::int64_t& count) {
  const int status = ReadWhatIs([&] { return connection_.QueryInteger(sql, count); });
  memory_.Note(*this);
  return status;
}

int RecordFile::CountRecords(std::int64_t& count) {
  return Count("SELECT count(*) FROM record", count);
}

int RecordFile::CountValues(const Key& key, std::int64_t& count) {
  if (!key.AllowsDuplicates()) return CountRecords(count);
  return Count(CountValuesSql(key).c_str(), count);
}

}  // namespace recordmanager
