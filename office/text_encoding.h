// Texts are UTF-8 at the tool's edges - command line, sample files, output - and Windows-1252 (the
// archive's marks: code page 850) in record files and calls.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace office {

enum class CodePage : unsigned { kAnsi = 1252, kOem = 850 };

// Fails for text that is not UTF-8, and for the first character that the code page lacks.
std::string Encode(std::string_view utf8, CodePage codePage = CodePage::kAnsi);

// For programs: the text as it is.
std::string Utf8(std::string_view bytes, CodePage codePage = CodePage::kAnsi);

// For showing: every byte becomes something visible. Control characters, which a record may hold
// but a terminal must not obey, become their number, as in \x1B.
std::string Decode(std::string_view bytes, CodePage codePage = CodePage::kAnsi);

// The columns that a text takes: its characters.
std::size_t ColumnsOf(std::string_view utf8);

// The text filled up with blanks to the columns; a longer one stays whole.
std::string PaddedRight(std::string_view utf8, std::size_t columns);

// Of letters without umlauts; all else stays as it is.
std::string UpperCase(std::string_view text);

// As it is typed on a command line: in quotation marks where a blank would divide it, or another
// character mean something to the shell.
std::string Typed(std::string text);

// Without the blanks at both ends.
std::string_view Trimmed(std::string_view text);

}  // namespace office
