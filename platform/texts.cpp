// Code pages. All conversions go by way of UTF-16, as on Windows.
#include <algorithm>
#include <string>
#include <string_view>

#include "platform/recoding.h"
#include "platform/unsupported.h"
#include "platform/windows_api.h"

namespace {

using platform::Encoding;
using platform::Unsupported;

Encoding EncodingOf(UINT codePage) {
  switch (codePage) {
    case CP_UTF8:
      return Encoding::kUtf8;
    case 1252:
      return Encoding::kAnsi;
    case 850:
      return Encoding::kOem;
    default:
      Unsupported("code pages", std::to_string(codePage));
  }
}

// A length of -1 means up to and including the terminator.
template <class Char>
std::basic_string_view<Char> Input(const Char* source, int length) {
  const std::size_t size =
      length < 0 ? std::char_traits<Char>::length(source) + 1 : static_cast<std::size_t>(length);
  return {source, size};
}

// Windows' convention: no room asked for means that only the length is wanted.
template <class Char>
int Deliver(const std::basic_string<Char>& result, Char* destination, int room) {
  const int length = static_cast<int>(result.size());
  if (room == 0) return length;
  if (room < length) return 0;
  std::copy(result.begin(), result.end(), destination);
  return length;
}

constexpr unsigned char UpperInAnsi(unsigned char c) {
  const bool latin = (c >= 'a' && c <= 'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7);
  if (latin) return static_cast<unsigned char>(c - 0x20);
  switch (c) {
    case 0x9A:  // s, o-e and z: beyond Latin-1
    case 0x9C:
    case 0x9E:
      return static_cast<unsigned char>(c - 0x10);
    case 0xFF:
      return 0x9F;
    default:
      return c;
  }
}

}  // namespace

int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR source, int sourceLength,
                               LPWSTR destination, int destinationLength) {
  if (sourceLength == 0) return 0;
  const platform::WideText wide =
      platform::ToUtf16(EncodingOf(codePage), Input(source, sourceLength));
  if (wide.broken && flags == MB_ERR_INVALID_CHARS) return 0;
  return Deliver(wide.text, destination, destinationLength);
}

int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR source, int sourceLength,
                               LPSTR destination, int destinationLength, LPCSTR defaultChar,
                               BOOL* usedDefaultChar) {
  const bool toUtf8 = codePage == CP_UTF8;
  if (flags != (toUtf8 ? 0 : WC_NO_BEST_FIT_CHARS)) {
    Unsupported("WideCharToMultiByte", "a conversion to lookalikes (without WC_NO_BEST_FIT_CHARS)");
  }
  if (sourceLength == 0) return 0;
  const char* const substitute = toUtf8 ? "\xEF\xBF\xBD" : "?";
  const platform::NarrowText narrow =
      platform::FromUtf16(EncodingOf(codePage), Input(source, sourceLength),
                          defaultChar != nullptr ? defaultChar : substitute);
  if (usedDefaultChar != nullptr) *usedDefaultChar = narrow.substituted ? TRUE : FALSE;
  return Deliver(narrow.text, destination, destinationLength);
}

DWORD WINAPI CharUpperBuffA(LPSTR text, DWORD length) {
  if (text == nullptr) return 0;
  std::transform(text, text + length, text, [](char c) {
    return static_cast<char>(UpperInAnsi(static_cast<unsigned char>(c)));
  });
  return length;
}
