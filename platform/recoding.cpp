// Code pages. All conversions go by way of UTF-16, as on Windows.
#include "platform/recoding.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

#include "platform/unsupported.h"
#include "platform/windows_api.h"

namespace {

constexpr UINT kAnsi = 1252;
constexpr UINT kOem = 850;
constexpr auto kUtf16 = "UTF-16LE";

// Nothing when some of it has no counterpart.
std::optional<std::string> Convert(const char* to, const char* from, std::string_view input) {
  std::string output(2 * input.size(), '\0');      // none of our encodings takes more
  auto* source = const_cast<char*>(input.data());  // iconv writes nothing there
  std::size_t sourceLeft = input.size();
  char* target = output.data();
  std::size_t targetLeft = output.size();
  iconv_t converter = iconv_open(to, from);
  const bool isWhole =
      iconv(converter, &source, &sourceLeft, &target, &targetLeft) != static_cast<std::size_t>(-1);
  iconv_close(converter);
  output.resize(output.size() - targetLeft);
  return isWhole ? std::optional(output) : std::nullopt;
}

std::u16string Units(std::string_view bytes) {
  std::u16string units(bytes.size() / sizeof(char16_t), u'\0');
  std::memcpy(units.data(), bytes.data(), bytes.size());
  return units;
}

using Table = std::array<char16_t, 256>;

// The five bytes that Windows-1252 leaves free stand for the control characters of the same
// numbers, as Windows has it.
Table MakeTable(const char* name) {
  Table table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const auto byte = static_cast<char>(i);
    const auto converted = Convert(kUtf16, name, {&byte, 1});
    table[i] = converted ? Units(*converted).front() : static_cast<char16_t>(i);
  }
  return table;
}

const Table& TableOf(UINT codePage) {
  static const Table ansi = MakeTable("CP1252");
  static const Table oem = MakeTable("CP850");
  if (codePage != kAnsi && codePage != kOem) {
    platform::Unsupported("code pages", std::to_string(codePage));
  }
  return codePage == kAnsi ? ansi : oem;
}

std::u16string FromCodePage(UINT codePage, std::string_view bytes) {
  const Table& table = TableOf(codePage);
  std::u16string text;
  for (const char byte : bytes) text += table[static_cast<unsigned char>(byte)];
  return text;
}

std::string ToCodePage(UINT codePage, std::u16string_view text, bool& substituted) {
  const Table& table = TableOf(codePage);
  std::string bytes;
  for (const char16_t unit : text) {
    const auto* const found = std::find(table.begin(), table.end(), unit);
    substituted = substituted || found == table.end();
    bytes += found == table.end() ? '?' : static_cast<char>(found - table.begin());
  }
  return bytes;
}

std::optional<std::u16string> FromUtf8(std::string_view bytes) {
  const auto converted = Convert(kUtf16, "UTF-8", bytes);
  return converted ? std::optional(Units(*converted)) : std::nullopt;
}

std::string ToUtf8(std::u16string_view text) {
  const std::string_view bytes(reinterpret_cast<const char*>(text.data()),
                               text.size() * sizeof(char16_t));
  const auto converted = Convert("UTF-8", kUtf16, bytes);
  if (!converted) platform::Unsupported("UTF-16", "half a character");
  return *converted;
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

}  // namespace

int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR source, int sourceLength,
                               LPWSTR destination, int destinationLength) {
  const std::string_view bytes = Input(source, sourceLength);
  if (codePage != CP_UTF8) {
    return Deliver(FromCodePage(codePage, bytes), destination, destinationLength);
  }
  const std::optional<std::u16string> text = FromUtf8(bytes);
  if (!text && flags != MB_ERR_INVALID_CHARS) {
    platform::Unsupported("MultiByteToWideChar", "a substitute for what is no UTF-8");
  }
  return text ? Deliver(*text, destination, destinationLength) : 0;
}

int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR source, int sourceLength,
                               LPSTR destination, int destinationLength, LPCSTR defaultChar,
                               BOOL* usedDefaultChar) {
  const bool toUtf8 = codePage == CP_UTF8;
  if (flags != (toUtf8 ? 0 : WC_NO_BEST_FIT_CHARS) || defaultChar != nullptr) {
    platform::Unsupported("WideCharToMultiByte", "a substitute but the question mark");
  }
  const std::u16string_view text = Input(source, sourceLength);
  bool substituted = false;
  const std::string bytes = toUtf8 ? ToUtf8(text) : ToCodePage(codePage, text, substituted);
  if (usedDefaultChar != nullptr) *usedDefaultChar = substituted ? TRUE : FALSE;
  return Deliver(bytes, destination, destinationLength);
}

namespace platform {

std::string AnsiText(const char16_t* text) {
  bool substituted = false;
  return text == nullptr ? "" : ToCodePage(kAnsi, text, substituted);
}

std::u16string WideOfAnsi(std::string_view text) { return FromCodePage(kAnsi, text); }

std::string Utf8(const char16_t* text) { return ToUtf8(text); }

std::uint32_t CopyPath(const std::string& utf8, char16_t* path, std::uint32_t room) {
  const std::u16string wide = FromUtf8(utf8).value_or(u"");
  const auto length = static_cast<std::uint32_t>(wide.size());
  if (length >= room) return length + 1;
  std::copy_n(wide.c_str(), length + 1, path);
  return length;
}

}  // namespace platform
