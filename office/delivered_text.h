// An export's result, as a caller finds it in a buffer that was full of blanks.
#pragma once

#include <optional>
#include <string_view>

namespace office {

// The bytes before the first zero byte or, without one, before the blanks at the end. Nothing when
// the buffer is as it was.
inline std::optional<std::string_view> DeliveredText(std::string_view buffer) {
  const std::string_view written = buffer.substr(0, buffer.find_last_not_of(' ') + 1);
  if (written.empty()) return std::nullopt;
  return written.substr(0, written.find('\0'));
}

}  // namespace office
