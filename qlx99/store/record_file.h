// Open record files. An export opens what it needs, reads or writes, and everything is closed when
// it returns:
//
//   RecordFile<CaseRecord> cases(dataRoot);
//   RecordFile<CasePartyRecord> parties(dataRoot, cases);  // opened only if the case file is
//   if (!parties.IsOpen()) return 0;                       // the user knows which file it was
//   for (const auto& party : parties.Walk(CasePartyRecord::byCase, caseId)) ...
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <optional>
#include <string_view>

#include "frame/bytes.h"
#include "frame/registry.h"
#include "store/record.h"
#include "store/record_manager.h"

namespace qlx99 {

template <class Layout>
class RecordWalk;

// A position in an open record file and the record that was read there last. A copy is a second,
// independent position in the same open file; neither opens or closes anything.
template <class Layout>
class RecordCursor {
 public:
  using Key = typename Layout::Key;

  // The record of the last read that succeeded; all zero bytes before the first.
  const Record<Layout>& Current() const { return records_[current_]; }

  // A read that fails leaves Current() as it was.
  Status GetEqual(const Key& key, std::int32_t value) {
    return GetEqual(key, std::string_view(reinterpret_cast<const char*>(&value), sizeof value));
  }
  Status GetEqual(const Key& key, std::string_view keyBytes) {
    keyBuffer_ = {};
    CopyBytes(keyBytes, keyBuffer_.data(), keyBuffer_.size());
    return Read(btrieve::kGetEqual, key);
  }
  // The record with this key value, until the next read; null when none is read.
  const Record<Layout>* Find(const Key& key, std::int32_t value) {
    return GetEqual(key, value) == btrieve::kSuccess ? &Current() : nullptr;
  }
  Status GetFirst(const Key& key) { return Read(btrieve::kGetFirst, key); }
  Status GetNext(const Key& key) { return Read(btrieve::kGetNext, key); }

  // Writes the record as a new one. A number that the record manager assigns comes back in
  // Current().
  Status Insert(const Key& key, const Record<Layout>& record) {
    return Write(btrieve::kInsert, key, record);
  }

  // Writes the record over the one that was read last.
  Status Update(const Key& key, const Record<Layout>& record) {
    return Write(btrieve::kUpdate, key, record);
  }

  // Removes the record with this key value.
  Status Delete(const Key& key, std::int32_t value) {
    keyBuffer_ = {};
    std::memcpy(keyBuffer_.data(), &value, sizeof value);
    std::uint16_t length = Layout::file.length;
    return Call(btrieve::kDelete, key, records_[current_], length);
  }

  // The records with this key value, for a range-based for loop: Get Equal, then Get Next as long
  // as records with the same key value are found. Leaving the loop early reads nothing more, and
  // Current() is the record it was left at.
  RecordWalk<Layout> Walk(const Key& key, std::int32_t value) { return {*this, key, value}; }

  // All records in the order of a key: Get First, then Get Next.
  RecordWalk<Layout> WalkAll(const Key& key) { return {*this, key, std::nullopt}; }

 protected:
  PositionBlock positionBlock_{};

 private:
  Status Read(WORD operation, const Key& key) {
    Record<Layout>& other = records_[1 - current_];
    std::uint16_t length = Layout::file.length;
    const Status status = Call(operation, key, other, length);
    if (status != btrieve::kSuccess) return status;
    // A record shorter than its layout ends in zero bytes, not in what was read before.
    std::fill(other.bytes.begin() + std::min(length, Layout::file.length), other.bytes.end(), '\0');
    current_ = 1 - current_;
    return status;
  }

  Status Write(WORD operation, const Key& key, const Record<Layout>& record) {
    records_[current_] = record;
    std::uint16_t length = Layout::file.length;
    return Call(operation, key, records_[current_], length);
  }

  Status Call(WORD operation, const Key& key, Record<Layout>& record, std::uint16_t& length) {
    return RecordCall(operation, positionBlock_, nullptr, record.bytes.data(), length,
                      keyBuffer_.data(), key.number, ClientId{});
  }

  // The current record, and room for the next one.
  std::array<Record<Layout>, 2> records_;
  std::size_t current_ = 0;
  // Kept between the calls of a walk: the record manager may need the key of the last read.
  std::array<char, btrieve::kMaxKeyLength> keyBuffer_{};
};

// A record file that the constructor opens, with a message when that fails, and the destructor
// closes exactly when it had opened.
template <class Layout>
class RecordFile : public RecordCursor<Layout> {
 public:
  explicit RecordFile(const DataRoot& dataRoot)
      : open_(OpenRecordFile(Layout::file.name, this->positionBlock_, dataRoot) ==
              btrieve::kSuccess) {}

  // Opens the file only if `before` is open, so that of several files the first failure is the last
  // attempt.
  template <class Before>
  RecordFile(const DataRoot& dataRoot, const RecordFile<Before>& before)
      : open_(before.IsOpen() && OpenRecordFile(Layout::file.name, this->positionBlock_,
                                                dataRoot) == btrieve::kSuccess) {}

  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;

  ~RecordFile() {
    if (open_) CloseRecordFile(Layout::file.name, this->positionBlock_);
  }

  bool IsOpen() const { return open_; }

  // Null also when the file is not open.
  const Record<Layout>* Find(const typename Layout::Key& key, std::int32_t value) {
    return open_ ? RecordCursor<Layout>::Find(key, value) : nullptr;
  }

 private:
  bool open_;
};

// A walk over records in the order of a key, as a range: those with one value of the key, or all.
// It ends at the first read that fails, or at the first record with another value.
template <class Layout>
class RecordWalk {
 public:
  using Key = typename Layout::Key;

  RecordWalk(RecordCursor<Layout>& cursor, const Key& key, std::optional<std::int32_t> value)
      : cursor_(&cursor), key_(&key), value_(value) {}

  class Iterator {
   public:
    explicit Iterator(RecordWalk& walk) : walk_(&walk) {}
    const Record<Layout>& operator*() const { return walk_->cursor_->Current(); }
    Iterator& operator++() {
      walk_->status_ = walk_->cursor_->GetNext(*walk_->key_);
      return *this;
    }
    bool operator==(std::default_sentinel_t /*end*/) const { return !walk_->IsOnRecord(); }

   private:
    RecordWalk* walk_;
  };

  Iterator begin() {
    status_ = value_ ? cursor_->GetEqual(*key_, *value_) : cursor_->GetFirst(*key_);
    return Iterator(*this);
  }
  std::default_sentinel_t end() const { return {}; }

 private:
  bool IsOnRecord() const {
    if (status_ != btrieve::kSuccess) return false;
    const char* const keyBytes = cursor_->Current().bytes.data() + key_->field.offset;
    return !value_ || std::memcmp(keyBytes, &*value_, sizeof *value_) == 0;
  }

  RecordCursor<Layout>* cursor_;
  const Key* key_;
  std::optional<std::int32_t> value_;
  Status status_ = btrieve::kSuccess;
};

// The number of records on the walk.
template <class Walk>
std::int32_t CountRecords(Walk walk) {
  std::int32_t count = 0;
  for ([[maybe_unused]] const auto& record : walk) ++count;
  return count;
}

// Goes to the record at a position of the walk, counted from 1; a position below 1 means the first.
// True when there is such a record; it is the cursor's current one then, and nothing beyond it has
// been read.
template <class Walk>
bool WalkToPosition(Walk walk, std::int32_t position) {
  std::int32_t current = 0;
  for ([[maybe_unused]] const auto& record : walk) {
    if (++current >= position) return true;
  }
  return false;
}

}  // namespace qlx99
