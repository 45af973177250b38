#include "office/record_text.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstring>

#include "office/failure.h"
#include "office/text_encoding.h"

namespace office {
namespace {

using qlx99::FieldInfo;
using qlx99::FieldKind;

template <class Value>
void Put(const FieldInfo& field, Value value, std::string& record) {
  std::memcpy(record.data() + field.offset, &value, sizeof value);
}

template <class Value>
Value Get(const FieldInfo& field, std::string_view record) {
  Value value{};
  std::memcpy(&value, record.data() + field.offset, sizeof value);
  return value;
}

[[noreturn]] void Refuse(const FieldInfo& field, std::string_view value, const char* why) {
  throw Failure(std::string(field.name) + ": \"" + std::string(value) + "\" " + why);
}

std::uint16_t DayNumberIn(const FieldInfo& field, std::string_view text) {
  const auto date = CalendarDateIn(text);
  if (!date) Refuse(field, text, "is not a date such as 31.12.2024.");
  const std::uint16_t dayNumber = qlx99::DayNumberOf(*date);
  if (qlx99::FormatDay(dayNumber).Bytes() != text) {
    Refuse(field, text, "lies outside what a record can hold, 01.01.1900 to 05.06.2079.");
  }
  return dayNumber;
}

void SetText(const FieldInfo& field, std::string_view value, std::string& record) {
  if (value.find('|') != std::string_view::npos) {
    Refuse(field, value, "holds a \"|\", which divides the fields of what macros are given.");
  }
  std::string bytes =
      Encode(value, field.kind == FieldKind::kOemText ? CodePage::kOem : CodePage::kAnsi);
  if (bytes.size() > field.width) {
    throw Failure(std::string(field.name) + ": \"" + std::string(value) + "\" has " +
                  std::to_string(bytes.size()) + " characters, but the field holds " +
                  std::to_string(field.width) + ".");
  }
  bytes.resize(field.width, ' ');
  record.replace(field.offset, field.width, bytes);
}

std::string AmountText(double amount) {
  std::array<char, 400> text{};  // the longest, of a number near zero, has some 345 characters
  const auto result =
      std::to_chars(text.data(), text.data() + text.size(), amount, std::chars_format::fixed);
  return {text.data(), result.ptr};
}

std::string TextIn(const FieldInfo& field, std::string_view record, CodePage codePage) {
  std::string_view text = record.substr(field.offset, field.width);
  // Some programs fill fields with zero bytes.
  while (!text.empty() && (text.back() == ' ' || text.back() == '\0')) text.remove_suffix(1);
  return Decode(text, codePage);
}

}  // namespace

std::optional<qlx99::Date> CalendarDateIn(std::string_view text) {
  const qlx99::Date date = qlx99::DateIn(text);
  const std::chrono::year_month_day day{std::chrono::year(date.year),
                                        std::chrono::month(static_cast<unsigned>(date.month)),
                                        std::chrono::day(static_cast<unsigned>(date.day))};
  const bool isWhole = qlx99::FormatDate(date).Bytes() == text;
  return isWhole && day.ok() ? std::optional(date) : std::nullopt;
}

std::string BlankRecord(const qlx99::RecordLayout& layout) {
  std::string record(layout.file.length, '\0');
  for (const FieldInfo& field : layout.fields) {
    if (field.kind == FieldKind::kDayNumber) Put(field, qlx99::kNoDate, record);
    if (field.kind == FieldKind::kText || field.kind == FieldKind::kOemText) {
      SetText(field, "", record);
    }
  }
  return record;
}

void SetField(const FieldInfo& field, std::string_view value, std::string& record) {
  switch (field.kind) {
    case FieldKind::kInt32: {
      const auto number = NumberIn<std::int32_t>(value);
      if (!number) Refuse(field, value, "is not a whole number of at most 32 bits.");
      return Put(field, *number, record);
    }
    case FieldKind::kDayNumber:
      return Put(field, DayNumberIn(field, value), record);
    case FieldKind::kAmount: {
      const auto amount = NumberIn<double>(value);
      if (!amount || !std::isfinite(*amount)) {
        Refuse(field, value, "is not an amount such as 1234.56.");
      }
      return Put(field, *amount, record);
    }
    case FieldKind::kText:
    case FieldKind::kOemText:
      return SetText(field, value, record);
  }
}

std::string FieldText(const FieldInfo& field, std::string_view record) {
  switch (field.kind) {
    case FieldKind::kInt32:
      return std::to_string(Get<std::int32_t>(field, record));
    case FieldKind::kDayNumber:
      return qlx99::FormatDay(Get<std::uint16_t>(field, record)).Terminated();
    case FieldKind::kAmount:
      return AmountText(Get<double>(field, record));
    case FieldKind::kText:
      return TextIn(field, record, CodePage::kAnsi);
    case FieldKind::kOemText:
      return TextIn(field, record, CodePage::kOem);
  }
  return {};
}

}  // namespace office
