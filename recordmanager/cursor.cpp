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

// Over what stands before the entry, and the entry as far as it is used.
std::uint32_t CheckWordOf(const BlockImage& image) {
  constexpr std::size_t kWord = sizeof(std::uint32_t);
  std::array<std::uint32_t, sizeof(image) / kWord> words{};
  std::memcpy(words.data(), &image, sizeof(image));
  const std::size_t used = (offsetof(BlockImage, entry) + image.entrySize + kWord - 1) / kWord;
  std::uint32_t hash = CheckSeed();
  for (std::size_t i = 0; i < used; ++i) hash = (hash ^ words[i]) * 16777619U;  // FNV-1a, by words
  return hash;
}

}  // namespace

bool Cursor::Load(const std::uint8_t* positionBlock, Cursor& cursor) {
  if (positionBlock == nullptr) return false;
  BlockImage image{};
  std::memcpy(&image, positionBlock, sizeof(image));
  if (image.entrySize > Entry::kCapacity || image.check != CheckWordOf(image)) return false;
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
