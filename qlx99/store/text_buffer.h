// A short text being composed in place: no allocation, never longer than its capacity, always
// zero-terminated.
#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "frame/bytes.h"

namespace qlx99 {

template <std::size_t capacity>
class TextBuffer {
 public:
  // What does not fit any more is left out.
  void Append(std::string_view bytes) {
    size_ += CopyBytes(bytes, bytes_.data() + size_, capacity - size_);
  }

  // Signed decimal.
  void AppendNumber(std::int32_t number) {
    std::array<char, 11> digits{};  // "-2147483648"
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    Append({digits.data(), static_cast<std::size_t>(end - digits.data())});
  }

  // All bytes composed so far; record files may have brought zero bytes among them.
  std::string_view Bytes() const { return {bytes_.data(), size_}; }

  // The bytes before the first zero byte: what a caller sees of them as a zero-terminated text.
  std::string_view Text() const { return bytes_.data(); }
  const char* Terminated() const { return bytes_.data(); }

  // Lets the buffer end where its text does, so that what is appended next is part of it.
  void EndAtFirstZero() {
    size_ = Text().size();
    std::fill(bytes_.begin() + size_, bytes_.end(), '\0');  // what is appended has no terminator
  }

 protected:
  std::array<char, capacity + 1> bytes_{};
  std::size_t size_ = 0;
};

}  // namespace qlx99
