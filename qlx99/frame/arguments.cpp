#include "frame/arguments.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace qlx99 {
namespace {

// More than any number's text, so that a text that is all blanks and digits ends here even without
// a terminator.
constexpr std::size_t kLongestNumberText = 1024;

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::string_view BoundedText(const char* text, std::size_t limit) {
  if (text == nullptr) return {};
  const auto* const end = static_cast<const char*>(std::memchr(text, '\0', limit));
  return {text, end == nullptr ? limit : static_cast<std::size_t>(end - text)};
}

std::int32_t LeadingNumber(const char* text) {
  return LeadingNumber(BoundedText(text, kLongestNumberText));
}

std::int32_t LeadingNumber(std::string_view text) {
  using Limits = std::numeric_limits<std::int32_t>;
  const auto* at = std::find_if_not(text.begin(), text.end(), IsBlank);
  const bool signGiven = at != text.end() && (*at == '-' || *at == '+');
  const std::int64_t sign = signGiven && *at == '-' ? -1 : 1;
  if (signGiven) ++at;

  std::int64_t number = 0;
  for (; at != text.end() && IsDigit(*at); ++at) {
    number = number * 10 + sign * (*at - '0');
    if (number < Limits::min()) return Limits::min();
    if (number > Limits::max()) return Limits::max();
  }
  return static_cast<std::int32_t>(number);
}

}  // namespace qlx99
