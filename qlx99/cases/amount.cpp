#include "cases/amount.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "frame/bytes.h"

namespace qlx99 {
namespace {

constexpr std::size_t kGroup = 3;
constexpr std::size_t kMaxGroups = 4;
constexpr std::size_t kDecimals = 2;

// The digits before the decimals, the last groups of three set off by points.
void AppendGrouped(std::string_view digits, ResultRecord& dest) {
  const std::size_t groups = std::min((digits.size() - 1) / kGroup, kMaxGroups);
  std::size_t at = digits.size() - groups * kGroup;
  dest.Append(Part(digits, 0, at));
  for (; at < digits.size(); at += kGroup) {
    dest.Append(".");
    dest.Append(Part(digits, at, kGroup));
  }
}

}  // namespace

void FormatAmount(double amount, ResultRecord& dest) {
  if (!std::isfinite(amount)) {
    dest.AddEmptyFields(1);
    return;
  }
  std::array<char, 320> printed{};  // the largest double has 309 digits before its decimals
  const int length = std::snprintf(printed.data(), printed.size(), "%.2f", amount);
  std::string_view text(printed.data(), static_cast<std::size_t>(length));
  if (text.front() == '-') {
    dest.Append("-");
    text.remove_prefix(1);
  }
  // What stands before the decimals depends on the locale that the word processor has set.
  AppendGrouped(Part(text, 0, text.find_first_not_of("0123456789")), dest);
  dest.Append(",");
  dest.AddVerbatim(Part(text, text.size() - kDecimals, kDecimals));
}

}  // namespace qlx99
