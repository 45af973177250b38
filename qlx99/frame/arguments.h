// Arguments as macros pass them: texts that may be null, too long, or no numbers at all.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qlx99 {

// The text up to its terminator, at most `limit` bytes of it; nothing behind them is looked at. A
// null pointer is an empty text.
std::string_view BoundedText(const char* text, std::size_t limit);

// The number with which the text begins: leading blanks are skipped, a sign may follow, and the
// first character that is no digit ends it. A text that does not begin with a number, or a null
// pointer, gives 0. A number beyond 32 bits gives the nearest one that fits. However long the text
// is, nothing behind the character that ends the number is looked at.
std::int32_t LeadingNumber(const char* text);
std::int32_t LeadingNumber(std::string_view text);

}  // namespace qlx99
