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

// Of the buffer that Stat gave back: as many keys as it holds.
inline FileFacts FactsIn(std::string_view description) {
  FileFacts facts;
  description.copy(reinterpret_cast<char*>(&facts.file), sizeof facts.file);
  description.remove_prefix(std::min(description.size(), sizeof facts.file));
  facts.keys.resize(
      std::min<std::size_t>(facts.file.keyCount, description.size() / sizeof(KeyDescription)));
  description.copy(reinterpret_cast<char*>(facts.keys.data()),
                   facts.keys.size() * sizeof(KeyDescription));
  return facts;
}

}  // namespace btrieve
