#include "recordmanager/key.h"

#include <algorithm>
#include <cstring>

namespace recordmanager {
namespace {

constexpr std::uint16_t kKnownFlags =
    btrieve::kKeyDuplicates | btrieve::kKeyModifiable | btrieve::kKeyExtendedType;

std::uint64_t LoadLittleEndian(const std::uint8_t* source, std::size_t length) {
  std::uint64_t value = 0;
  std::memcpy(&value, source, length);
  return value;
}

void StoreBigEndian(std::uint64_t value, std::size_t length, std::uint8_t* target) {
  for (std::size_t i = length; i-- > 0; value >>= 8) {
    target[i] = static_cast<std::uint8_t>(value & 0xFF);
  }
}

std::uint64_t LoadBigEndian(const std::uint8_t* source, std::size_t length) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < length; ++i) value = value << 8 | source[i];
  return value;
}

bool IsPowerOfTwoUpTo8(std::size_t length) {
  return length <= 8 && length != 0 && (length & (length - 1)) == 0;
}

}  // namespace

Entry Entry::AfterAll() {
  Entry entry;
  entry.bytes.fill(0xFF);
  entry.size = kCapacity;
  return entry;
}

Entry Entry::From(const void* source, std::size_t length) {
  Entry entry;
  entry.size = static_cast<std::uint8_t>(std::min(length, kCapacity));
  if (entry.size != 0) std::memcpy(entry.bytes.data(), source, entry.size);
  return entry;
}

bool Entry::operator==(const Entry& other) const {
  return size == other.size && std::memcmp(bytes.data(), other.bytes.data(), size) == 0;
}

bool Entry::operator<(const Entry& other) const {
  const int order = std::memcmp(bytes.data(), other.bytes.data(), std::min(size, other.size));
  return order < 0 || (order == 0 && size < other.size);
}

std::uint8_t Key::Type() const {
  const bool extended = (description_.flags & btrieve::kKeyExtendedType) != 0;
  return extended ? description_.extendedType : btrieve::kStringKey;
}

bool Key::IsAutoincrement() const { return Type() == btrieve::kAutoincrementKey; }

int Key::Check(std::size_t recordLength) const {
  if ((description_.flags & ~kKnownFlags) != 0) return btrieve::kInvalidKeyFlags;
  if (description_.position == 0 || Offset() + Length() > recordLength) {
    return btrieve::kInvalidKeyPosition;
  }
  return CheckType();
}

int Key::CheckType() const {
  bool lengthFits = false;
  switch (Type()) {
    case btrieve::kStringKey:
      lengthFits = Length() >= 1 && Length() <= kLongestKey;
      break;
    case btrieve::kIntegerKey:
      lengthFits = IsPowerOfTwoUpTo8(Length());
      break;
    case btrieve::kAutoincrementKey:
      lengthFits = IsPowerOfTwoUpTo8(Length()) && Length() >= 2;
      break;
    default:
      return btrieve::kInvalidKeyType;
  }
  return lengthFits ? btrieve::kSuccess : btrieve::kInvalidKeyLength;
}

Entry Key::Lowest(const std::uint8_t* value) const {
  if (Type() == btrieve::kStringKey) return Entry::From(value, Length());
  std::uint64_t number = LoadLittleEndian(value, Length());
  if (IsAutoincrement() && IsNegative(value)) {
    number = ~number + 1;  // these keys are published to sort by the absolute value
  }
  Entry entry;
  entry.size = static_cast<std::uint8_t>(Length());
  StoreBigEndian(number, Length(), entry.bytes.data());
  if (!IsAutoincrement()) entry.bytes[0] ^= 0x80;
  return entry;
}

Entry Key::Highest(const std::uint8_t* value) const { return Make(value, ~std::uint64_t{0}); }

Entry Key::Make(const std::uint8_t* value, std::uint64_t sequence) const {
  const Entry entry = Lowest(value);
  return AllowsDuplicates() ? WithSequence(entry, sequence) : entry;
}

Entry Key::WithSequence(Entry entry, std::uint64_t sequence) const {
  StoreBigEndian(sequence, sizeof(sequence), entry.bytes.data() + Length());
  entry.size = static_cast<std::uint8_t>(Length() + sizeof(sequence));
  return entry;
}

bool Key::Matches(const Entry& entry, const std::uint8_t* value) const {
  const Entry lowest = Lowest(value);
  return entry.size >= lowest.size &&
         std::memcmp(entry.bytes.data(), lowest.bytes.data(), lowest.size) == 0;
}

bool Key::HaveSameValue(const Entry& first, const Entry& second) const {
  return first.size >= Length() && second.size >= Length() &&
         std::memcmp(first.bytes.data(), second.bytes.data(), Length()) == 0;
}

bool Key::StoreNext(const Entry& highest, std::uint8_t* value) const {
  std::uint64_t next = 1;
  if (highest.size >= Length()) next = LoadBigEndian(highest.bytes.data(), Length()) + 1;
  std::memcpy(value, &next, Length());
  return !IsNegative(value);
}

}  // namespace recordmanager
