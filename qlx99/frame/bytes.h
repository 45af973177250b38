// Copies and parts of texts. std::string_view's own copy and substr may throw, and with them the
// exception runtime would come into the library, several times the library's size.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace qlx99 {

// Copies at most `room` bytes and returns how many it copied.
inline std::size_t CopyBytes(std::string_view from, char* to, std::size_t room) {
  const std::size_t count = std::min(from.size(), room);
  if (count > 0) std::memcpy(to, from.data(), count);
  return count;
}

// The `count` bytes from `at` on, or as many of them as there are.
inline std::string_view Part(std::string_view text, std::size_t at, std::size_t count) {
  const std::size_t begin = std::min(at, text.size());
  return {text.data() + begin, std::min(count, text.size() - begin)};
}

}  // namespace qlx99
