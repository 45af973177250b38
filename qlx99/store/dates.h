// Day numbers: how the record files keep dates. Day 0 is 1 January 1900; 65535 means that there is
// no date.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qlx99 {

inline constexpr std::uint16_t kNoDate = 65535;

// "DD.MM.YYYY|"
inline constexpr std::size_t kDateFieldSize = 11;

// Writes the day as DD.MM.YYYY and "|", or "|" alone for no date, and returns the bytes written, 11
// or 1. `dayText` is the day number as decimal text, of which the low 16 bits count. Writes no
// terminator.
std::size_t FormatDayNumber(const char* dayText, char* dest);

// The day number of a date, computed without a check whether there is such a day; the year has four
// digits. A date that has no day number gives the low 16 bits of what comes out: 31.12.1899 gives
// "no date".
std::uint16_t DayNumberFromDate(int day, int month, int year);

}  // namespace qlx99
