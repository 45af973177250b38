#include "support/text.h"

#include <cstddef>

#include "platform/windows_api.h"

namespace qlx99::tests {
namespace {

using WideString = std::basic_string<WCHAR>;

constexpr UINT kAnsi = 1252;

WideString ToWide(std::string_view text, UINT codePage) {
  WideString wide(text.size(), WCHAR{});
  const int length = static_cast<int>(text.size());
  const int wideLength = MultiByteToWideChar(codePage, 0, text.data(), length, wide.data(), length);
  wide.resize(static_cast<std::size_t>(wideLength));
  return wide;
}

std::string FromWide(const WideString& wide, UINT codePage) {
  // No character of Windows-1252 takes more than three bytes.
  std::string text(wide.size() * 3, '\0');
  const int length = WideCharToMultiByte(codePage, codePage == kAnsi ? WC_NO_BEST_FIT_CHARS : 0,
                                         wide.data(), static_cast<int>(wide.size()), text.data(),
                                         static_cast<int>(text.size()), nullptr, nullptr);
  text.resize(static_cast<std::size_t>(length));
  return text;
}

}  // namespace

std::string Utf8(std::string_view ansi) { return FromWide(ToWide(ansi, kAnsi), CP_UTF8); }

std::string Ansi(std::string_view utf8) { return FromWide(ToWide(utf8, CP_UTF8), kAnsi); }

std::string Utf8(std::u16string_view utf16) {
  return FromWide({utf16.begin(), utf16.end()}, CP_UTF8);
}

}  // namespace qlx99::tests
