#include "recordmanager/cursor.h"

#include <array>
#include <cstddef>
#include <cstring>

#include "recordmanager/sql.h"

namespace recordmanager {
namespace {

// The position block's bytes.
struct BlockImage {
  std::uint32_t slot;
  std::uint32_t generation;
  std::int64_t id;
  std::int64_t version;
  std::uint32_t transaction;
  std::int16_t keyNumber;
  std::uint8_t entrySize;
  std::uint8_t unused;
  std::array<std::uint8_t, Entry::kCapacity> entry;
  std::uint32_t unused2;
  std::uint32_t check;
};

static_assert(sizeof(BlockImage) == btrieve::kPositionBlockSize);

// 0: not drawn yet.
std::uint32_t checkSeed = 0;

// The check word of everything before it. The products do not wait for one another.
std::uint32_t CheckWordOf(BlockImage image) {
  if (checkSeed == 0) checkSeed = RandomNumber() | 1U;
  image.check = 0;
  std::array<std::uint64_t, sizeof(image) / sizeof(std::uint64_t)> words{};
  std::memcpy(words.data(), &image, sizeof(image));
  std::uint64_t sum = 0;
  std::uint64_t factor = 0x9E3779B97F4A7C15U;  // odd, as are all that follow
  for (const std::uint64_t word : words) {
    sum += (word ^ checkSeed) * factor;
    factor += 0x632BE59BD9B4E01AU;
  }
  return static_cast<std::uint32_t>(sum ^ (sum >> 32U));
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
  cursor.current = {image.id, image.version, image.transaction};
  return true;
}

void Cursor::Save(std::uint8_t* positionBlock) const {
  BlockImage image{};
  image.slot = handle.slot;
  image.generation = handle.generation;
  image.id = current.id;
  image.version = current.version;
  image.transaction = current.transaction;
  image.keyNumber = static_cast<std::int16_t>(keyNumber);
  image.entrySize = entry.size;
  image.entry = entry.bytes;
  image.check = CheckWordOf(image);
  std::memcpy(positionBlock, &image, sizeof(image));
}

void Cursor::ForgetAll() { checkSeed = 0; }

}  // namespace recordmanager
