// Texts between the tests, whose sources are UTF-8, and the office, which speaks Windows-1252.
#pragma once

#include <string>
#include <string_view>

namespace qlx99::tests {

// Every byte of Windows-1252 has a character of its own, so two texts are equal exactly when their
// bytes are.
std::string Utf8(std::string_view ansi);
std::string Utf8(std::u16string_view wide);

// Fails for a character without a place there.
std::string Ansi(std::string_view utf8);

}  // namespace qlx99::tests
