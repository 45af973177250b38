#include "office/text_encoding.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>

#include "office/failure.h"
#include "platform/windows_api.h"

namespace office {
namespace {

using WideText = std::basic_string<WCHAR>;

bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

WideText Widen(std::string_view bytes, UINT codePage, DWORD flags) {
  const int length = static_cast<int>(bytes.size());
  const int needed = MultiByteToWideChar(codePage, flags, bytes.data(), length, nullptr, 0);
  WideText wide(static_cast<std::size_t>(needed), WCHAR{});
  MultiByteToWideChar(codePage, flags, bytes.data(), length, wide.data(), needed);
  return wide;
}

std::string Narrow(const WideText& wide, UINT codePage, DWORD flags, BOOL* substituted) {
  const int length = static_cast<int>(wide.size());
  const int needed =
      WideCharToMultiByte(codePage, flags, wide.data(), length, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(needed), '\0');
  WideCharToMultiByte(codePage, flags, wide.data(), length, bytes.data(), needed, nullptr,
                      substituted);
  return bytes;
}

// The text in the code page; `missing` tells whether it lacks one of the characters.
std::string EncodeRoughly(std::string_view utf8, CodePage codePage, bool& missing) {
  const WideText wide = Widen(utf8, CP_UTF8, MB_ERR_INVALID_CHARS);
  if (wide.empty()) throw Failure("\"" + std::string(utf8) + "\" is not UTF-8 text.");
  BOOL substituted = FALSE;
  std::string bytes = Narrow(wide, static_cast<UINT>(codePage), WC_NO_BEST_FIT_CHARS, &substituted);
  missing = substituted != FALSE;
  return bytes;
}

// The first character that the code page lacks, of a text that has one.
std::string MissingCharacter(std::string_view utf8, CodePage codePage) {
  for (std::size_t begin = 0; begin < utf8.size();) {
    std::size_t end = begin + 1;
    while (end < utf8.size() && IsContinuation(utf8[end])) ++end;
    const std::string_view character = utf8.substr(begin, end - begin);
    bool missing = false;
    EncodeRoughly(character, codePage, missing);
    if (missing) return std::string(character);
    begin = end;
  }
  return {};
}

std::string Number(WCHAR control) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "\\x%02X", static_cast<unsigned>(control));
  return text.data();
}

bool IsControl(WCHAR c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }

}  // namespace

std::string Encode(std::string_view utf8, CodePage codePage) {
  if (utf8.empty()) return {};
  bool missing = false;
  std::string bytes = EncodeRoughly(utf8, codePage, missing);
  if (missing) {
    throw Failure("The character \"" + MissingCharacter(utf8, codePage) + "\" in \"" +
                  std::string(utf8) + "\" has no place in the office's code page, " +
                  std::to_string(static_cast<unsigned>(codePage)) + ". Write it without.");
  }
  return bytes;
}

std::string Utf8(std::string_view bytes, CodePage codePage) {
  if (bytes.empty()) return {};
  return Narrow(Widen(bytes, static_cast<UINT>(codePage), 0), CP_UTF8, 0, nullptr);
}

std::string Decode(std::string_view bytes, CodePage codePage) {
  if (bytes.empty()) return {};
  WideText shown;
  for (const WCHAR c : Widen(bytes, static_cast<UINT>(codePage), 0)) {
    if (IsControl(c)) {
      const std::string number = Number(c);
      shown.append(number.begin(), number.end());
    } else {
      shown += c;
    }
  }
  return Narrow(shown, CP_UTF8, 0, nullptr);
}

std::size_t ColumnsOf(std::string_view utf8) {
  return utf8.size() - static_cast<std::size_t>(std::ranges::count_if(utf8, IsContinuation));
}

std::string PaddedRight(std::string_view utf8, std::size_t columns) {
  std::string padded(utf8);
  padded.append(columns - std::min(columns, ColumnsOf(utf8)), ' ');
  return padded;
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(),
                         [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return upper;
}

std::string Typed(std::string text) {
  if (text.find_first_of(" &()<>^|;'*?$#") == std::string::npos) return text;
  if (text.ends_with('\\')) text += '\\';  // or it would take the mark for a part of the text
  return '"' + text + '"';
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

}  // namespace office
