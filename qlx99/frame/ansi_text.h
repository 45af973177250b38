// Texts in Windows-1252, written readably in UTF-8 sources and converted by the compiler:
//   u8"können"_ansi
// The word processor, the record files and the message boxes of this library all speak that code
// page.
#pragma once

#include <array>
#include <cstddef>

namespace qlx99 {

namespace ansi_text {

// The literal as a template argument.
template <std::size_t Size>
struct Utf8Literal {
  char8_t bytes[Size]{};

  // Implicit, because a literal operator's argument is deduced through it.
  // NOLINTNEXTLINE(google-explicit-constructor, hicpp-explicit-conversions)
  consteval Utf8Literal(const char8_t (&literal)[Size]) {
    for (std::size_t i = 0; i < Size; ++i) bytes[i] = literal[i];
  }
};

// Not defined: naming it where the compiler computes stops the compiler.
void ThisCharacterIsNotWrittenHere();

// A two-byte UTF-8 character up to U+00FF has the same number in Windows-1252. Nothing else of that
// code page occurs in this library's texts, so anything else is a slip of the pen and fails to
// compile.
consteval char FromTwoBytes(char8_t lead, char8_t trail) {
  if ((lead != 0xC2 && lead != 0xC3) || trail < 0x80 || (lead == 0xC2 && trail < 0xA0)) {
    ThisCharacterIsNotWrittenHere();
  }
  return static_cast<char>(((lead & 0x03U) << 6U) | (trail & 0x3FU));
}

template <Utf8Literal literal>
consteval auto Convert() {
  std::array<char, sizeof(literal.bytes)> converted{};  // never longer than the UTF-8 text
  std::size_t length = 0;
  for (std::size_t i = 0; literal.bytes[i] != 0; ++i) {
    const char8_t byte = literal.bytes[i];
    converted[length++] =
        byte < 0x80 ? static_cast<char>(byte) : FromTwoBytes(byte, literal.bytes[++i]);
  }
  return converted;
}

template <Utf8Literal literal>
inline constexpr auto kConverted = Convert<literal>();

}  // namespace ansi_text

// The literal's zero-terminated Windows-1252 bytes, which live as long as the program.
template <ansi_text::Utf8Literal literal>
consteval const char* operator""_ansi() {
  return ansi_text::kConverted<literal>.data();
}

}  // namespace qlx99
