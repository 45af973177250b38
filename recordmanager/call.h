// One call as it came through an entry point. Its memory is the caller's, and callers differ: the
// data length may be a 16-bit variable whose address was widened, buffers may be null or unaligned.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "btrieve/btrieve.h"
#include "recordmanager/key.h"

namespace recordmanager {

using ClientId = std::array<std::uint8_t, btrieve::kClientIdSize>;

struct Call {
  WORD operation = 0;
  std::uint8_t* positionBlock = nullptr;
  std::uint8_t* dataBuffer = nullptr;
  void* dataLength = nullptr;
  std::uint8_t* keyBuffer = nullptr;
  std::size_t keyLength = 0;
  int keyNumber = 0;
  ClientId client{};

  // The data buffer as far as the caller says it reaches; empty when there is none.
  std::span<std::uint8_t> Data() const;
  void SetDataLength(std::size_t length) const;

  // The path in the key buffer.
  std::string_view Path() const;

  bool KeyBufferHolds(const Key& key) const;
  // Gives back the key of a record in a key buffer that holds it.
  void ReturnKey(const Key& key, const std::uint8_t* record) const;
};

}  // namespace recordmanager
