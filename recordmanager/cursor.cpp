#include "recordmanager/cursor.h"

#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <cstring>

namespace recordmanager {
namespace {

// The position block's bytes.
struct BlockImage {
  std::uint32_t slot;
  std::uint32_t generation;
  std::int64_t id;
  std::int64_t version;
  std::uint32_t rollbacks;
  std::int16_t keyNumber;
  std::uint8_t entrySize;
  std::uint8_t unused;
  std::array<std::uint8_t, Entry::kCapacity> entry;
  std::uint32_t unused2;
  std::uint32_t check;
};

static_assert(sizeof(BlockImage) == btrieve::kPositionBlockSize);

// Differs from load to load, so that blocks of an earlier one are strangers.
std::uint32_t CheckSeed() {
  static const std::uint32_t seed = [] {
    std::uint32_t random = 0;
    sqlite3_randomness(sizeof(random), &random);
    return random;
  }();
  return seed;
}

// Of everything before it.
std::uint32_t CheckWordOf(BlockImage image) {
  image.check = 0;
  std::array<std::uint64_t, sizeof(image) / sizeof(std::uint64_t)> words{};
  std::memcpy(words.data(), &image, sizeof(image));
  std::uint64_t hash = CheckSeed();
  for (const std::uint64_t word : words) hash = (hash ^ word) * 1099511628211U;  // FNV-1a, by words
  return static_cast<std::uint32_t>(hash ^ (hash >> 32U));
}

static_assert(offsetof(BlockImage, check) == sizeof(BlockImage) - sizeof(std::uint32_t));

}  // namespace

bool Cursor::Load(const std::uint8_t* positionBlock, Cursor& cursor) {
  if (positionBlock == nullptr) return false;
  BlockImage image{};
  std::memcpy(&image, positionBlock, sizeof(image));
  if (image.check != CheckWordOf(image) || image.entrySize > Entry::kCapacity) return false;
  cursor.handle = {image.slot, image.generation};
  cursor.keyNumber = image.keyNumber;
  cursor.entry = {image.entry, image.entrySize};
  cursor.current = {image.id, image.version, image.rollbacks};
  return true;
}

void Cursor::Save(std::uint8_t* positionBlock) const {
  BlockImage image{};
  image.slot = handle.slot;
  image.generation = handle.generation;
  image.id = current.id;
  image.version = current.version;
  image.rollbacks = current.rollbacks;
  image.keyNumber = static_cast<std::int16_t>(keyNumber);
  image.entrySize = entry.size;
  image.entry = entry.bytes;
  image.check = CheckWordOf(image);
  std::memcpy(positionBlock, &image, sizeof(image));
}

}  // namespace recordmanager
