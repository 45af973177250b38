#include "store/dates.h"

#include "frame/arguments.h"
#include "frame/bytes.h"

namespace qlx99 {
namespace {

// The calendar is computed in years that begin with March, so that a leap day is the last day of
// its year. January and February 1900 come before the first such year, and 1900 was no leap year:
// they are handled apart.
constexpr int kDaysBeforeMarch1900 = 58;  // the day number of 28.02.1900
constexpr int kDaysInFourYears = 1461;
constexpr int kDaysInFiveMonths = 153;  // the months' lengths repeat so from March on

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

// The lowest digits of the number, leading zeros included.
void AppendDigits(int number, int digits, DateText& dest) {
  if (digits > 1) AppendDigits(number / 10, digits - 1, dest);
  const auto digit = static_cast<char>('0' + number % 10);
  dest.Append({&digit, 1});
}

}  // namespace

Date DateIn(std::string_view text) {
  return {LeadingNumber(Part(text, 0, 2)), LeadingNumber(Part(text, 3, 2)),
          LeadingNumber(Part(text, 6, 4))};
}

DateText FormatDate(const Date& date) {
  DateText text;
  AppendDigits(date.day, 2, text);
  text.Append(".");
  AppendDigits(date.month, 2, text);
  text.Append(".");
  AppendDigits(date.year, 4, text);
  return text;
}

DateText FormatDay(std::uint16_t dayNumber) {
  return dayNumber == kNoDate ? DateText() : FormatDate(DateOf(dayNumber));
}

std::uint16_t DayNumberOf(const Date& date) {
  const auto [day, month, year] = date;
  if (year == 1900 && month < 3) return static_cast<std::uint16_t>(month == 1 ? day - 1 : day + 30);
  const int marchMonth = month > 2 ? month - 3 : month + 9;
  const int marchYear = (month > 2 ? year : year - 1) - 1900;
  return static_cast<std::uint16_t>((kDaysInFiveMonths * marchMonth + 2) / 5 +
                                    kDaysInFourYears * marchYear / 4 + day + kDaysBeforeMarch1900);
}

}  // namespace qlx99
