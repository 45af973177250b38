// Texts from one code page to another, by the C library's converter.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

// What a window shows of a text; a null pointer counts as an empty one.
std::string AnsiText(const char16_t* text);
std::u16string WideOfAnsi(std::string_view text);

// As this host writes paths and terminals show texts.
std::string Utf8(const char16_t* text);

// Windows' convention: returns the length, or where there is too little room, the room that is
// needed, with `path` untouched.
std::uint32_t CopyPath(const std::string& utf8, char16_t* path, std::uint32_t room);

}  // namespace platform
