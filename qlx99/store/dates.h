// Dates, and day numbers: how the record files keep dates.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "store/text_buffer.h"

namespace qlx99 {

// Whether there is such a day is nowhere checked.
struct Date {
  int day;
  int month;
  int year;  // four digits
};

// DD.MM.YYYY
inline constexpr std::size_t kDateLength = 10;
using DateText = TextBuffer<kDateLength>;

// The date in a text of that form. What stands between the numbers is not looked at; one that is
// none counts as 0.
Date DateIn(std::string_view text);
DateText FormatDate(const Date& date);

// Day 0 is 1 January 1900; this means that there is no date.
inline constexpr std::uint16_t kNoDate = 65535;

// Empty for kNoDate.
DateText FormatDay(std::uint16_t dayNumber);

// A date that has no day number gives the low 16 bits of what comes out: 31.12.1899 gives kNoDate.
std::uint16_t DayNumberOf(const Date& date);

}  // namespace qlx99
