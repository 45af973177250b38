// How dates and numbers are written, whatever the export.
#include <array>
#include <chrono>
#include <string>

#include "frame/arguments.h"
#include "store/dates.h"
#include "support/caller_buffer.h"

namespace qlx99::tests {
namespace {

TEST(DayNumbers, AgreeWithTheCalendarInBothDirections) {
  using namespace std::chrono;
  constexpr sys_days kDayZero = 1900y / January / 1;
  for (std::uint16_t number = 0; number < kNoDate; ++number) {
    const year_month_day date = kDayZero + days(number);
    const auto day = static_cast<int>(static_cast<unsigned>(date.day()));
    const auto month = static_cast<int>(static_cast<unsigned>(date.month()));
    const auto year = static_cast<int>(date.year());
    std::array<char, 16> expected{};
    std::snprintf(expected.data(), expected.size(), "%02d.%02d.%04d", day, month, year);
    ASSERT_EQ(FormatDay(number).Bytes(), expected.data());
    ASSERT_EQ(DayNumberOf({day, month, year}), number);
  }
  EXPECT_EQ(DayNumberOf({31, 12, 1899}), kNoDate);
  EXPECT_EQ(FormatDay(kNoDate).Bytes(), "");
}

TEST(LeadingNumbers, EndWhereTheDigitsDo) {
  constexpr std::int32_t kMost = 2147483647;
  const std::string kBlanks = std::string(2000, ' ') + '7';
  const std::string kZeros = std::string(2000, '0') + '7';
  const std::pair<std::int32_t, std::vector<const char*>> cases[] = {
      {17, {"17", "  17", "\t17", "+17", "17abc", "17 18", "0017"}},
      {7, {kBlanks.c_str(), kZeros.c_str()}},
      {-17, {"-17", " -17-"}},
      {1, {"1.5", "1,5"}},
      {0, {"0x11", "", " ", "abc", "-", "- 17", "--17", "+", "a17", "-0"}},
      {kMost, {"2147483647", "2147483648", "99999999999999999999"}},
      {-kMost - 1, {"-2147483648", "-2147483649", "-99999999999999999999"}}};
  for (const auto& [number, texts] : cases) {
    for (const char* text : texts) {
      EXPECT_EQ(LeadingNumber(text), number);
      // Behind the character that ends the number there may be no memory.
      EXPECT_EQ(LeadingNumber(Unterminated(std::string(text) + 'x')), number);
    }
  }
  EXPECT_EQ(LeadingNumber(nullptr), 0);
}

}  // namespace
}  // namespace qlx99::tests
