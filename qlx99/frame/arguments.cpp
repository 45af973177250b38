#include "frame/arguments.h"

#include <cstring>
#include <iterator>
#include <limits>

namespace qlx99 {
namespace {

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Looks at one character after the other, and at none behind the one that ends the number.
template <class End>
std::int32_t NumberAt(const char* at, End end) {
  using Limits = std::numeric_limits<std::int32_t>;
  while (at != end && IsBlank(*at)) ++at;
  const bool signGiven = at != end && (*at == '-' || *at == '+');
  const std::int64_t sign = signGiven && *at == '-' ? -1 : 1;
  if (signGiven) ++at;

  std::int64_t number = 0;
  for (; at != end && IsDigit(*at); ++at) {
    number = number * 10 + sign * (*at - '0');
    if (number < Limits::min()) return Limits::min();
    if (number > Limits::max()) return Limits::max();
  }
  return static_cast<std::int32_t>(number);
}

}  // namespace

std::string_view BoundedText(const char* text, std::size_t limit) {
  if (text == nullptr) return {};
  const auto* const end = static_cast<const char*>(std::memchr(text, '\0', limit));
  return {text, end == nullptr ? limit : static_cast<std::size_t>(end - text)};
}

std::int32_t LeadingNumber(const char* text) {
  return text == nullptr ? 0 : NumberAt(text, std::unreachable_sentinel);
}

std::int32_t LeadingNumber(std::string_view text) {
  return NumberAt(text.data(), text.data() + text.size());
}

}  // namespace qlx99
