// Records that follow one another on a key, and what is known of the gaps between them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "recordmanager/key.h"

namespace recordmanager {

// A place between two entries of a key: right before the one given, whether there is such an entry
// or not, or right behind it.
struct Cut {
  Entry entry;
  bool behind = false;

  static Cut BeforeAll() { return {}; }
  static Cut BehindAll() { return {Entry::AfterAll(), true}; }

  bool operator==(const Cut& other) const { return behind == other.behind && entry == other.entry; }
  bool operator<(const Cut& other) const {
    return behind == other.behind || !other.behind ? entry < other.entry : !(other.entry < entry);
  }
  bool IsBehind(const Entry& other) const { return behind ? !(entry < other) : other < entry; }
};

// A record as it stands on a key. The data is somebody else's.
struct KeyedRecord {
  Entry entry;
  std::int64_t id = 0;
  std::int64_t version = 0;
  std::span<const std::uint8_t> data;
};

// All records of a key between two cuts.
class RecordBlock {
 public:
  static constexpr std::size_t kNone = SIZE_MAX;

  // Begins anew at a cut, without records. Then they are added as they are met from there on in
  // that direction, and in the end the block is closed.
  void Begin(const Cut& cut, Direction direction);
  // False when the record does not lie beyond those before it: the key is out of order.
  bool Add(const KeyedRecord& record);
  // `atEnd` says that there are no more records in that direction.
  void Close(bool atEnd);

  const Cut& Low() const { return low_; }
  const Cut& High() const { return high_; }
  // Where the block ends in that direction, and whether the key does.
  const Cut& End(Direction direction) const { return direction == Direction::kUp ? high_ : low_; }
  bool EndsKey(Direction direction) const;
  // Whether it was begun there in that direction.
  bool BeginsAt(const Cut& cut, Direction direction) const {
    return direction_ == direction && (direction == Direction::kUp ? low_ : high_) == cut;
  }

  std::size_t Count() const { return rows_.size(); }
  // The memory it takes.
  std::size_t Bytes() const;

  // The first record from the cut on in that direction; kNone when there is none in the block.
  std::size_t Find(const Cut& cut, Direction direction) const;
  // The one behind that; kNone when there is none in the block.
  std::size_t Next(std::size_t index, Direction direction) const;

  // Asks the processor for a record that a walk in that direction will want soon. Those of a long
  // list have left its cache since they were read, and waiting for them is most of a step.
  void FetchBeyond(std::size_t index, Direction direction) const;

  Entry EntryAt(std::size_t index) const { return EntryOf(rows_[index]); }
  KeyedRecord At(std::size_t index) const;

 private:
  struct Row {
    std::int64_t id;
    std::int64_t version;
    std::uint32_t begin;  // of its entry's bytes, which its data follows
    std::uint16_t size;   // of the data
    std::uint8_t entrySize;
  };

  Entry EntryOf(const Row& row) const;

  Cut low_;
  Cut high_;
  Direction direction_ = Direction::kUp;
  std::vector<Row> rows_;  // in the key's order, as soon as the block is closed
  std::vector<std::uint8_t> bytes_;
};

}  // namespace recordmanager
