#include "store/dates.h"

#include <cstdlib>

#include "frame/arguments.h"

namespace qlx99 {
namespace {

// The calendar is computed in years that begin with March, so that a leap day is the last day of
// its year. January and February 1900 come before the first such year, and 1900 was no leap year:
// they are handled apart.
constexpr int kDaysBeforeMarch1900 = 58;  // the day number of 28.02.1900
constexpr int kDaysInFourYears = 1461;
constexpr int kDaysInFiveMonths =
    153;  // from March on, the months' lengths repeat in groups of five

struct Date {
  int day;
  int month;
  int year;
};

Date DateOf(int dayNumber) {
  if (dayNumber <= 30) return {dayNumber + 1, 1, 1900};
  if (dayNumber <= kDaysBeforeMarch1900) return {dayNumber - 30, 2, 1900};
  const int quarters = 4 * (dayNumber - kDaysBeforeMarch1900) - 1;
  const int year = quarters / kDaysInFourYears;
  const int dayOfYear = quarters % kDaysInFourYears / 4;
  const int month = (5 * dayOfYear + 2) / kDaysInFiveMonths;  // 0 = March
  const int day = ((5 * dayOfYear + 2) % kDaysInFiveMonths + 5) / 5;
  if (month >= 10) return {day, month - 9, year + 1901};
  return {day, month + 3, year + 1900};
}

// Writes the lowest digits of the number, leading zeros included.
char* WriteDigits(int number, int digits, char* dest) {
  for (int i = digits - 1; i >= 0; --i) {
    dest[i] = static_cast<char>('0' + number % 10);
    number /= 10;
  }
  return dest + digits;
}

}  // namespace

std::size_t FormatDayNumber(const char* dayText, char* dest) {
  const auto dayNumber = static_cast<std::uint16_t>(LeadingNumber(dayText));
  char* at = dest;
  if (dayNumber != kNoDate) {
    const Date date = DateOf(dayNumber);
    at = WriteDigits(date.day, 2, at);
    *at++ = '.';
    at = WriteDigits(date.month, 2, at);
    *at++ = '.';
    at = WriteDigits(date.year, 4, at);
  }
  *at++ = '|';
  return static_cast<std::size_t>(at - dest);
}

std::uint16_t DayNumberFromDate(int day, int month, int year) {
  if (year == 1900 && month < 3) return static_cast<std::uint16_t>(month == 1 ? day - 1 : day + 30);
  const int marchMonth = month > 2 ? month - 3 : month + 9;
  const int marchYear = (month > 2 ? year : year - 1) - 1900;
  return static_cast<std::uint16_t>((kDaysInFiveMonths * marchMonth + 2) / 5 +
                                    kDaysInFourYears * marchYear / 4 + day + kDaysBeforeMarch1900);
}

}  // namespace qlx99
