// A fuzzer's bytes, spent one decision after another. Behind their end all decisions are 0.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

namespace fuzz {

class Input {
 public:
  Input(const std::uint8_t* bytes, std::size_t size) : bytes_(bytes, size) {}

  bool IsSpent() const { return bytes_.empty(); }

  std::uint8_t Byte() {
    if (bytes_.empty()) return 0;
    const std::uint8_t byte = bytes_.front();
    bytes_ = bytes_.subspan(1);
    return byte;
  }

  std::uint16_t Word() {
    const std::uint8_t low = Byte();
    return static_cast<std::uint16_t>(low | Byte() << 8);
  }

  // At most that many bytes.
  std::string Bytes(std::size_t most) {
    const std::size_t length = std::min(most, bytes_.size());
    std::string taken(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(length));
    bytes_ = bytes_.subspan(length);
    return taken;
  }

  // A text that a length stands before.
  std::string Text() { return Bytes(Byte()); }

  // One of `count` choices.
  std::size_t Choice(std::size_t count) { return Byte() % count; }

  // True about once in `n`, never when spent.
  bool OneIn(unsigned n) { return Byte() % n == n - 1; }

 private:
  std::span<const std::uint8_t> bytes_;
};

// What a fuzzer is looking for, beside crashes.
[[noreturn]] inline void Found(const char* what) {
  std::fprintf(stderr, "FOUND: %s\n", what);
  std::abort();
}

}  // namespace fuzz

// What every fuzzer has, libFuzzer's as well as the one that plays a corpus again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);
