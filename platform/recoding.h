// From one code page to another, by the C library's converter.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

enum class Encoding { kAnsi, kOem, kUtf8 };  // Windows-1252, code page 850, UTF-8

struct WideText {
  std::u16string text;
  bool broken;  // something in the input was no character; U+FFFD stands in its place
};

struct NarrowText {
  std::string text;
  bool substituted;  // some character has no counterpart in the encoding; the substitute stands in
                     // its place
};

// The five bytes that Windows-1252 leaves free stand for the control characters of the same
// numbers, in both directions, as Windows has it.
WideText ToUtf16(Encoding encoding, std::string_view bytes);
NarrowText FromUtf16(Encoding encoding, std::u16string_view text, std::string_view substitute);

// What a window shows of a text; a null pointer counts as an empty one.
std::string AnsiText(const char16_t* text);

// As this host writes paths.
std::string Utf8(const char16_t* text);

// Windows' convention: returns the length, or where there is too little room, the room that is
// needed, with `path` untouched.
std::uint32_t CopyPath(const std::string& utf8, char16_t* path, std::uint32_t room);

}  // namespace platform
