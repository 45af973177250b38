#include "support/text.h"

#include <cstddef>

#include "platform/windows_api.h"

namespace qlx99::tests {
namespace {

constexpr UINT kAnsi = 1252;

std::string Convert(std::string_view text, UINT from, UINT to) {
  if (text.empty()) return {};
  const int length = static_cast<int>(text.size());
  std::basic_string<WCHAR> wide(text.size(), WCHAR{});
  const int wideLength = MultiByteToWideChar(from, 0, text.data(), length, wide.data(), length);
  // No character of Windows-1252 takes more than three bytes.
  std::string converted(text.size() * 3, '\0');
  const int size =
      WideCharToMultiByte(to, to == kAnsi ? WC_NO_BEST_FIT_CHARS : 0, wide.data(), wideLength,
                          converted.data(), static_cast<int>(converted.size()), nullptr, nullptr);
  converted.resize(static_cast<std::size_t>(size));
  return converted;
}

}  // namespace

std::string Utf8(std::string_view ansi) { return Convert(ansi, kAnsi, CP_UTF8); }

std::string Ansi(std::string_view utf8) { return Convert(utf8, CP_UTF8, kAnsi); }

}  // namespace qlx99::tests
