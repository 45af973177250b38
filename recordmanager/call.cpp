#include "recordmanager/call.h"

#include <cstring>

namespace recordmanager {

std::span<std::uint8_t> Call::Data() const {
  if (dataBuffer == nullptr || dataLength == nullptr) return {};
  std::uint16_t length = 0;
  std::memcpy(&length, dataLength, sizeof(length));
  return {dataBuffer, length};
}

void Call::SetDataLength(std::size_t length) const {
  // Only the low half: what lies beside it may not be the caller's length at all.
  const auto low = static_cast<std::uint16_t>(length);
  std::memcpy(dataLength, &low, sizeof(low));
}

std::string_view Call::Path() const {
  if (keyBuffer == nullptr) return {};
  const void* end = std::memchr(keyBuffer, 0, keyLength);
  const auto* begin = reinterpret_cast<const char*>(keyBuffer);
  const auto* behind = end == nullptr ? begin + keyLength : static_cast<const char*>(end);
  return {begin, static_cast<std::size_t>(behind - begin)};
}

bool Call::KeyBufferHolds(const Key& key) const {
  return keyBuffer != nullptr && keyLength >= key.Length();
}

void Call::ReturnKey(const Key& key, const std::uint8_t* record) const {
  std::memcpy(keyBuffer, key.In(record), key.Length());
}

}  // namespace recordmanager
