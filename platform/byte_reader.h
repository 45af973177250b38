// Numbers and texts of a resource, taken off one after another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace platform {

// Reads little-endian numbers one after another. The first read past the end makes it fail for
// good; failed reads give 0, so a caller may check once, at the end.
class ByteReader {
 public:
  explicit ByteReader(std::span<const std::byte> bytes) : bytes_(bytes) {}

  // Fails for good, too, when what was read is not as it must be.
  void Expect(bool sound) { ok_ = ok_ && sound; }

  bool Ok() const { return ok_; }
  std::size_t Left() const { return bytes_.size() - position_; }

  std::span<const std::byte> Take(std::size_t length) {
    if (!ok_ || length > Left()) {
      ok_ = false;
      return {};
    }
    position_ += length;
    return bytes_.subspan(position_ - length, length);
  }

  std::uint16_t U16() { return static_cast<std::uint16_t>(Number(sizeof(std::uint16_t))); }
  std::uint32_t U32() { return Number(sizeof(std::uint32_t)); }
  int I16() { return static_cast<std::int16_t>(U16()); }

  // Up to and without the terminator.
  std::u16string WideText() {
    std::u16string text;
    for (std::uint16_t unit = U16(); unit != 0; unit = U16()) text += static_cast<char16_t>(unit);
    return text;
  }

  // On to the next multiple of four bytes from the beginning; the padding after the last item may
  // be missing.
  void Align() {
    while (position_ % 4 != 0 && Left() > 0) ++position_;
  }

 private:
  std::uint32_t Number(std::size_t length) {
    std::uint32_t number = 0;
    int shift = 0;
    for (const std::byte byte : Take(length)) {
      number |= std::to_integer<std::uint32_t>(byte) << shift;
      shift += 8;
    }
    return number;
  }

  std::span<const std::byte> bytes_;
  std::size_t position_ = 0;
  bool ok_ = true;
};

}  // namespace platform
