// The records of one file: finding them by key, writing them, transactions over them. What a cursor
// is, and who may do what, is decided above.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "recordmanager/key.h"
#include "recordmanager/memory_limit.h"
#include "recordmanager/read_ahead.h"
#include "recordmanager/record_layout.h"
#include "recordmanager/sql.h"

namespace recordmanager {

// Which entries count: those from `first` on, after it, up to it, before it, or from `first` to
// `last`.
enum class Bound : std::uint8_t { kFrom, kAfter, kUpTo, kBefore, kWithin };

// Which of a key's entries is meant: the nearest to `first` within the bound.
struct Search {
  Bound bound = Bound::kFrom;
  Entry first;
  Entry last;
  bool isStep = false;  // from the record that was read last
};

// A record, and the state in which somebody read or wrote it.
struct RecordVersion {
  std::int64_t id = 0;  // 0: no record
  std::int64_t version = 0;
  // 0, or the transaction that may have given this number: if that is taken back, it is given
  // again.
  std::uint32_t transaction = 0;
};

class RecordFile {
 public:
  // `path` as HostPath gives it; `forReading` as OpenDatabase takes it; `memory` outlives the file.
  // Leaves `file` alone unless the status is 0.
  static int Open(const std::string& path, bool forReading, MemoryLimit& memory,
                  std::unique_ptr<RecordFile>& file);
  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;
  ~RecordFile() { memory_.Remove(*this); }

  const RecordLayout& Layout() const { return layout_; }
  bool IsReadOnly() const { return connection_.IsReadOnly(); }

  // To be called in a process that is a copy of the one that has the file open, and leaves it
  // alone. Its transaction counts as taken back here.
  void BecomeParents();

  // Finds the entry that the search means and copies its record to `target`. Status 9 when there is
  // none, 22 when the record does not fit; then nothing is changed.
  int Read(const Key& key, const Search& search, std::span<std::uint8_t> target,
           RecordVersion& version, Entry& entry);

  // The search for the next entry, after or before the position that was left on an entry when this
  // version of its record was read or written.
  Search StepFrom(const Key& key, Bound bound, const Entry& entry,
                  const RecordVersion& version) const;

  // Writes a record of the layout's length. Autoincrement fields of 0 are given their numbers in
  // `record`. `entries` receives the new entries, one a key in the layout's order.
  int Insert(std::span<std::uint8_t> record, RecordVersion& version, std::vector<Entry>& entries);

  // Writes over, or removes, the record as it was read; status 80 when it has been changed or
  // removed since.
  int Update(std::span<const std::uint8_t> record, RecordVersion& version,
             std::vector<Entry>& entries);
  int Delete(const RecordVersion& version);

  int CountRecords(std::int64_t& count);
  int CountValues(const Key& key, std::int64_t& count);

  // A transaction holds the file against other writers from Begin to Commit or RollBack. Repeating
  // a call is harmless. When SQLite had to give the transaction up, writes and Commit return the
  // status that it was given up for.
  int Begin();
  int Commit();
  void RollBack();
  bool IsInTransaction() const { return inTransaction_; }

  // Gives back the memory of all that can be read again; and how much that is.
  void ForgetRecords();
  std::size_t KeptBytes() const { return readAhead_.Bytes() + connection_.PageBytes(); }

  // Takes the place of an object for the same file: versions read there are as good here.
  void GoOnFrom(const RecordFile& other) {
    transaction_ = other.transaction_;
    changesBefore_ = other.changesBefore_;
  }

  // To be called when the last user has closed the file: brings all its records, by whomever they
  // were written, into the file itself, so that it can be copied while processes still hold it.
  // Does not wait for others: whoever is in the way does it when he closes the file. Without the
  // memory for it, it is left to the next time.
  void Settle();

 private:
  // Reads along one key, by direction.
  using KeyReads = std::array<Statement, kDirectionCount>;

  explicit RecordFile(MemoryLimit& memory) : memory_(memory) { memory_.Add(*this); }
  int Prepare();
  int Reopen();
  template <typename Body>
  int ReadWhatIs(Body body);
  int PrepareRead(const Key& key, Direction direction, Statement*& read);
  int Find(const Key& key, const Search& search, KeyedRecord& record);
  bool Look();
  int ReadFrom(const Key& key, const Search& search, const Cut& cut, Purpose purpose,
               KeyedRecord& record);
  int ReadBlock(const Key& key, const Search& search, const Cut& cut, std::size_t most,
                RecordBlock& block);
  bool TakeRow(Statement& row, KeyedRecord& record) const;
  int Count(const char* sql, std::int64_t& count);
  std::size_t IndexOf(const Key& key) const {
    return static_cast<std::size_t>(&key - layout_.keys.data());
  }

  template <typename Body>
  int Write(Body body);
  int BeginWriting();
  int RenewState();
  int GivenUp() const;
  int Noted(int status);
  int NextChange(std::int64_t& change);
  int ReadChange(std::int64_t& change);
  RecordVersion VersionOf(std::int64_t id, std::int64_t version) const;
  bool IsTakenBack(const RecordVersion& version) const;
  bool IsKnown(std::uint32_t transaction) const {
    return transaction_ - transaction < changesBefore_.size();
  }
  std::int64_t& ChangeBefore(std::uint32_t transaction) {
    return changesBefore_[transaction % changesBefore_.size()];
  }
  std::int64_t ChangeBefore(std::uint32_t transaction) const {
    return changesBefore_[transaction % changesBefore_.size()];
  }
  int NumberRecord(std::span<std::uint8_t> record);
  int LoadEntries(const RecordVersion& version, std::vector<Entry>& entries);
  int StoreRecord(Statement& statement, std::int64_t change, std::int64_t id,
                  std::span<const std::uint8_t> record, const std::vector<Entry>& entries);

  MemoryLimit& memory_;
  std::string path_;
  Connection connection_;
  bool isStale_ = false;  // to be opened anew
  RecordLayout layout_;
  std::vector<KeyReads> reads_;
  ReadAhead readAhead_;
  Statement begin_, commit_, rollBack_, renewState_, countChange_, readChange_, loadEntries_,
      insert_, rewrite_, rekey_, delete_;
  bool inTransaction_ = false;
  int givenUp_ = btrieve::kSuccess;  // what for, if SQLite has
  std::uint32_t transaction_ = 1;    // another one after each that is taken back
  bool leftLog_ = false;             // what was taken back may still lie in the log
  // The last change before this one, and before each of the last that were taken back.
  std::array<std::int64_t, 256> changesBefore_{};
};

}  // namespace recordmanager
