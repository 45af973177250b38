// Code pages. All conversions go by way of UTF-16, as on Windows.
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "platform/recoding.h"
#include "platform/unsupported.h"
#include "platform/windows_api.h"

namespace {

using platform::Encoding;

int Fail(DWORD error) {
  SetLastError(error);
  return 0;
}

// Nothing for a code page that this layer does not know.
std::optional<Encoding> EncodingOf(UINT codePage) {
  switch (codePage) {
    case CP_UTF8:
      return Encoding::kUtf8;
    case 1252:
      return Encoding::kAnsi;
    case 850:
      return Encoding::kOem;
    default:
      return std::nullopt;
  }
}

// The arguments that both conversions share. A length of -1 means up to and including the
// terminator.
template <class Source, class Destination>
bool AreSound(const Source* source, int sourceLength, const Destination* destination,
              int destinationLength) {
  return source != nullptr && sourceLength != 0 && sourceLength >= -1 && destinationLength >= 0 &&
         (destination != nullptr || destinationLength == 0);
}

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
  if (room < length) return Fail(ERROR_INSUFFICIENT_BUFFER);
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
  const std::optional<Encoding> encoding = EncodingOf(codePage);
  if (!encoding || !AreSound(source, sourceLength, destination, destinationLength)) {
    return Fail(ERROR_INVALID_PARAMETER);
  }
  if ((flags & ~MB_ERR_INVALID_CHARS) != 0) return Fail(ERROR_INVALID_FLAGS);
  const platform::WideText wide = platform::ToUtf16(*encoding, Input(source, sourceLength));
  if (wide.broken && flags == MB_ERR_INVALID_CHARS) return Fail(ERROR_NO_UNICODE_TRANSLATION);
  return Deliver(wide.text, destination, destinationLength);
}

int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR source, int sourceLength,
                               LPSTR destination, int destinationLength, LPCSTR defaultChar,
                               BOOL* usedDefaultChar) {
  const std::optional<Encoding> encoding = EncodingOf(codePage);
  const bool toUtf8 = encoding == Encoding::kUtf8;
  if (!encoding || !AreSound(source, sourceLength, destination, destinationLength) ||
      (toUtf8 && (defaultChar != nullptr || usedDefaultChar != nullptr))) {
    return Fail(ERROR_INVALID_PARAMETER);
  }
  if ((flags & ~(toUtf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS)) != 0) {
    return Fail(ERROR_INVALID_FLAGS);
  }
  if (!toUtf8 && flags != WC_NO_BEST_FIT_CHARS) {
    platform::Unsupported("WideCharToMultiByte",
                          "a conversion to lookalikes (without WC_NO_BEST_FIT_CHARS)");
  }
  const char* substitute = toUtf8 ? "\xEF\xBF\xBD" : "?";
  const platform::NarrowText narrow = platform::FromUtf16(
      *encoding, Input(source, sourceLength), defaultChar != nullptr ? defaultChar : substitute);
  if (narrow.substituted && flags == WC_ERR_INVALID_CHARS) {
    return Fail(ERROR_NO_UNICODE_TRANSLATION);
  }
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
