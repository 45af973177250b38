#include "recordmanager/record_layout.h"

#include <algorithm>
#include <cstring>

namespace recordmanager {
namespace {

constexpr std::size_t kMostKeys = 119;
constexpr std::uint16_t kVariableLength = 0x0001;
constexpr std::uint16_t kKeyOnly = 0x0010;

int CheckFile(const btrieve::FileDescription& file) {
  if (file.recordLength == 0 || (file.fileFlags & (kVariableLength | kKeyOnly)) != 0) {
    return btrieve::kInvalidRecordLength;
  }
  if (file.keyCount == 0 || file.keyCount > kMostKeys) return btrieve::kInvalidKeyCount;
  return btrieve::kSuccess;
}

}  // namespace

const Key* RecordLayout::FindKey(int number) const {
  const auto found = std::find_if(keys.begin(), keys.end(),
                                  [number](const Key& key) { return key.Number() == number; });
  return found == keys.end() ? nullptr : &*found;
}

int ParseLayout(std::span<const std::uint8_t> description, RecordLayout& layout) {
  if (description.size() < sizeof(layout.file)) return btrieve::kDataBufferLength;
  std::memcpy(&layout.file, description.data(), sizeof(layout.file));
  if (const int status = CheckFile(layout.file); status != btrieve::kSuccess) return status;
  description = description.subspan(sizeof(layout.file));
  if (description.size() < layout.file.keyCount * sizeof(btrieve::KeyDescription)) {
    return btrieve::kDataBufferLength;
  }
  layout.keys.clear();
  for (std::uint8_t i = 0; i < layout.file.keyCount; ++i) {
    btrieve::KeyDescription key{};
    std::memcpy(&key, description.data() + i * sizeof(key), sizeof(key));
    if ((layout.file.fileFlags & btrieve::kKeyNumbersGiven) == 0) key.keyNumber = i;
    if (key.keyNumber >= kMostKeys || layout.FindKey(key.keyNumber) != nullptr) {
      return btrieve::kInvalidKeyNumber;
    }
    layout.keys.emplace_back(key);
    if (const int status = layout.keys.back().Check(layout.RecordLength());
        status != btrieve::kSuccess) {
      return status;
    }
  }
  return btrieve::kSuccess;
}

std::vector<std::uint8_t> DescribeLayout(const RecordLayout& layout) {
  std::vector<std::uint8_t> description(sizeof(layout.file) +
                                        layout.keys.size() * sizeof(btrieve::KeyDescription));
  std::memcpy(description.data(), &layout.file, sizeof(layout.file));
  std::uint8_t* target = description.data() + sizeof(layout.file);
  for (const Key& key : layout.keys) {
    std::memcpy(target, &key.Description(), sizeof(btrieve::KeyDescription));
    target += sizeof(btrieve::KeyDescription);
  }
  return description;
}

}  // namespace recordmanager
