// Keys: where a key's bytes lie in the record, and how its values sort.
//
// SQLite compares the entries of a key byte by byte. So a value is first turned into bytes that
// sort as the value does (strings as they are, integers high byte first with the sign bit flipped),
// and a key that allows duplicates appends a number that grows with each insertion.
//
// A further type has its number in btrieve.h, its lengths in Key::CheckType and its order in
// Key::Lowest, which takes what it does not know for an integer. Earlier versions take a file with
// such a key for a damaged one (status 2), unless its format has a new number (file_format.cpp).
#pragma once

#include <array>
#include <cstdint>

#include "btrieve/btrieve.h"

namespace recordmanager {

// Longer keys would not fit into the position block, which remembers the entry read last.
inline constexpr std::size_t kLongestKey = 80;

// Which way a read goes along a key.
enum class Direction : std::uint8_t { kUp, kDown };

inline constexpr std::size_t kDirectionCount = 2;

// One entry of a key: the bytes that it is sorted by.
struct Entry {
  static constexpr std::size_t kCapacity = kLongestKey + sizeof(std::uint64_t);

  std::array<std::uint8_t, kCapacity> bytes{};
  std::uint8_t size = 0;

  // Bounds below and above the entries of every key.
  static Entry BeforeAll() { return {}; }
  static Entry AfterAll();

  // Copies `length` bytes; an entry longer than any of ours is cut.
  static Entry From(const void* source, std::size_t length);

  bool operator==(const Entry& other) const;
  // In the order of the key.
  bool operator<(const Entry& other) const;
};

class Key {
 public:
  explicit Key(const btrieve::KeyDescription& description) : description_(description) {}

  const btrieve::KeyDescription& Description() const { return description_; }
  int Number() const { return description_.keyNumber; }
  std::size_t Length() const { return description_.length; }
  bool AllowsDuplicates() const { return (description_.flags & btrieve::kKeyDuplicates) != 0; }
  bool IsModifiable() const { return (description_.flags & btrieve::kKeyModifiable) != 0; }
  bool IsAutoincrement() const;

  // The status that Create gives for a key that this record manager does not know, or for one
  // outside the record.
  int Check(std::size_t recordLength) const;

  // The key's value in a record: `Length()` bytes.
  const std::uint8_t* In(const std::uint8_t* record) const { return record + Offset(); }
  std::uint8_t* In(std::uint8_t* record) const { return record + Offset(); }

  // For a value as it stands in records and key buffers: bounds at or below, and at or above, all
  // its entries.
  Entry Lowest(const std::uint8_t* value) const;
  Entry Highest(const std::uint8_t* value) const;

  // The value's new entry. A sequence is never used twice in a file.
  Entry Make(const std::uint8_t* value, std::uint64_t sequence) const;

  // The entry that its value would have with another sequence, for keys that allow duplicates.
  Entry WithSequence(Entry entry, std::uint64_t sequence) const;

  // Whether the entry is one of this value.
  bool Matches(const Entry& entry, const std::uint8_t* value) const;

  // Whether two entries, or bounds of a value, are of one value.
  bool HaveSameValue(const Entry& first, const Entry& second) const;

  // Autoincrement keys: writes the number after that of `highest` (an empty entry: 1) to `value`.
  // False when there is no further number; `value` is then of no use.
  bool StoreNext(const Entry& highest, std::uint8_t* value) const;

 private:
  std::size_t Offset() const { return description_.position - 1U; }
  std::uint8_t Type() const;
  int CheckType() const;
  bool IsNegative(const std::uint8_t* value) const { return (value[Length() - 1] & 0x80) != 0; }

  btrieve::KeyDescription description_;
};

}  // namespace recordmanager
