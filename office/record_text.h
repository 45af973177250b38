// The fields of a record as people write and read them: numbers in decimal, dates as DD.MM.YYYY,
// amounts as 1234.56, texts in UTF-8 without the blanks behind them.
#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>

#include "store/dates.h"
#include "store/record_layout.h"

namespace office {

// The whole text as a number, or nothing.
template <class Number>
std::optional<Number> NumberIn(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// The whole text, DD.MM.YYYY, as a day of the calendar, or nothing.
std::optional<qlx99::Date> CalendarDateIn(std::string_view text);

// A record without any content: numbers 0, no dates, blank texts. Bytes that no field names are 0.
std::string BlankRecord(const qlx99::RecordLayout& layout);

// Writes the value into the record. Fails, in plain words, for a value that is none of the field's
// kind or does not fit.
void SetField(const qlx99::FieldInfo& field, std::string_view value, std::string& record);

// Whatever the bytes are; a missing date gives an empty text.
std::string FieldText(const qlx99::FieldInfo& field, std::string_view record);

}  // namespace office
