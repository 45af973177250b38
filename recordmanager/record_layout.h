// The description of a record file, as Create takes it, as Stat gives it back, and as the file
// itself keeps it.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "btrieve/btrieve.h"
#include "recordmanager/key.h"

namespace recordmanager {

struct RecordLayout {
  btrieve::FileDescription file{};
  std::vector<Key> keys;

  std::size_t RecordLength() const { return file.recordLength; }

  // The key of that number; null when the file has none.
  const Key* FindKey(int number) const;
};

// Reads a description: the file's 16 bytes, then 16 bytes a key. Returns the status that Create
// publishes for what is wrong or not supported (variable lengths, keys of several segments, other
// key types); `layout` is then unusable.
int ParseLayout(std::span<const std::uint8_t> description, RecordLayout& layout);

// The same bytes again, with every key's number filled in.
std::vector<std::uint8_t> DescribeLayout(const RecordLayout& layout);

}  // namespace recordmanager
