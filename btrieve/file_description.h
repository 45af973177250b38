// What Create takes and Stat gives back, composed and taken apart.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "btrieve/btrieve.h"

namespace btrieve {

// A key of the bytes from `offset` on, counted from 0. A file whose flags do not say otherwise
// numbers its keys in their order.
inline KeyDescription DescribeKey(std::size_t offset, std::size_t length,
                                  unsigned type = kStringKey, unsigned flags = 0) {
  KeyDescription key{};
  key.position = static_cast<std::uint16_t>(offset + 1);
  key.length = static_cast<std::uint16_t>(length);
  key.flags = static_cast<std::uint16_t>(flags | kKeyExtendedType);
  key.extendedType = static_cast<std::uint8_t>(type);
  return key;
}

// The buffer for Create.
inline std::string DescribeFile(std::size_t recordLength, const std::vector<KeyDescription>& keys,
                                unsigned fileFlags = 0) {
  FileDescription file{};
  file.recordLength = static_cast<std::uint16_t>(recordLength);
  file.pageSize = 4096;
  file.keyCount = static_cast<std::uint8_t>(keys.size());
  file.fileFlags = static_cast<std::uint16_t>(fileFlags);
  std::string description(reinterpret_cast<const char*>(&file), sizeof file);
  description.append(reinterpret_cast<const char*>(keys.data()),
                     keys.size() * sizeof(KeyDescription));
  return description;
}

// What a record file says of itself.
struct FileFacts {
  FileDescription file{};
  std::vector<KeyDescription> keys;
};

// Room for what Stat gives back of any file.
inline constexpr std::size_t kMostKeys = 119;
inline constexpr std::size_t kLongestDescription =
    sizeof(FileDescription) + kMostKeys * sizeof(KeyDescription);

// Of the buffer that Stat gave back: as many keys as it holds, each with all its segments.
inline FileFacts FactsIn(std::string_view description) {
  FileFacts facts;
  description.copy(reinterpret_cast<char*>(&facts.file), sizeof facts.file);
  description.remove_prefix(std::min(description.size(), sizeof facts.file));
  for (int keys = 0; keys < facts.file.keyCount && description.size() >= sizeof(KeyDescription);) {
    KeyDescription& key = facts.keys.emplace_back();
    description.copy(reinterpret_cast<char*>(&key), sizeof key);
    description.remove_prefix(sizeof key);
    if ((key.flags & kKeySegmented) == 0) ++keys;
  }
  return facts;
}

// The buffer that Stat gave back as Create takes it, for a file of the same make: without what is
// counted, and without the version, which belongs to the record manager that made the file.
inline std::string DescribeAnother(std::string description) {
  FileFacts facts = FactsIn(description);
  facts.file.fileVersion = 0;
  facts.file.recordCount = 0;
  facts.file.fileFlags = static_cast<std::uint16_t>(facts.file.fileFlags & ~kPreallocated);
  facts.file.reserved = 0;
  facts.file.pages = 0;
  for (KeyDescription& key : facts.keys) key.uniqueValues = 0;
  std::memcpy(description.data(), &facts.file, std::min(description.size(), sizeof facts.file));
  if (facts.keys.empty()) return description;
  std::memcpy(description.data() + sizeof facts.file, facts.keys.data(),
              facts.keys.size() * sizeof(KeyDescription));
  return description;  // what lies behind the keys, a collating sequence, stays
}

}  // namespace btrieve
