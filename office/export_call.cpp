#include "office/export_call.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "office/failure.h"
#include "office/install_kind.h"
#include "office/record_text.h"
#include "office/text_encoding.h"

namespace office {
namespace {

std::vector<std::string> Split(const std::string& record) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0; begin <= record.size();) {
    const std::size_t end = std::min(record.find('|', begin), record.size());
    parts.push_back(record.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

// The parts as fields: more parts than fields are one free text, which lies between the fields
// before it and those behind it.
void JoinFreeText(const std::vector<Field>& fields, std::vector<std::string>& parts) {
  const auto free = std::ranges::find(fields, Form::kFreeText, &Field::form);
  if (free == fields.end()) return;
  const auto joined = parts.begin() + (free - fields.begin());
  while (parts.size() > fields.size()) {
    *joined += "|" + *(joined + 1);
    parts.erase(joined + 1);
  }
}

bool HasForm(Form form, const std::string& text) {
  constexpr std::size_t kDecimals = 3;  // with the comma
  constexpr std::size_t kCodeLength = 2;
  switch (form) {
    case Form::kText:
    case Form::kFreeText:
      return true;
    case Form::kFilled:
      return !text.empty();
    case Form::kNumber:
      return NumberIn<std::int32_t>(text).has_value();
    case Form::kNumberOrNone:
      return text.empty() || HasForm(Form::kNumber, text);
    case Form::kDate:
      return text.empty() || CalendarDateIn(text).has_value();
    case Form::kAmount:
      return text.empty() || (text.size() > kDecimals && text[text.size() - kDecimals] == ',');
    case Form::kRelationCode:
      return ColumnsOf(text) == kCodeLength;
  }
  return false;
}

}  // namespace

DeliveredRecord::DeliveredRecord(const Export& from, std::string_view ansi, Reader reader)
    : from_(&from),
      text_(reader == Reader::kPerson ? Decode(ansi) : Utf8(ansi)),
      fields_(Split(text_)) {
  JoinFreeText(from.fields, fields_);
  complete_ = std::ranges::equal(from.fields, fields_, HasForm, &Field::form);
  std::ranges::transform(fields_, std::back_inserter(trimmed_),
                         [](const std::string& field) { return std::string(Trimmed(field)); });
}

const std::string& DeliveredRecord::operator[](std::string_view name) const {
  const auto found = std::ranges::find(from_->fields, name, &Field::name);
  if (!IsComplete() || found == from_->fields.end()) {
    throw std::logic_error(std::string(from_->name) + " has no field " + std::string(name));
  }
  return trimmed_[static_cast<std::size_t>(found - from_->fields.begin())];
}

namespace {

std::string TooMany(const Export& called, std::size_t given) {
  std::string names;
  for (const std::string& name : called.arguments) names += (names.empty() ? " (" : ", ") + name;
  const std::size_t taken = called.arguments.size();
  return std::string(called.name) + " takes " + std::to_string(taken) +
         (taken == 1 ? " argument" : " arguments") + names + (taken == 0 ? "" : ")") +
         "; you gave " + std::to_string(given) + "." +
         (called.fields.empty() ? "" : " The buffer is none of them.");
}

}  // namespace

CallOutcome CallExport(const Export& called, const std::vector<std::string>& arguments) {
  if (arguments.size() > called.arguments.size()) {
    throw WrongUsage(TooMany(called, arguments.size()));
  }
  std::vector<std::string> texts;
  std::ranges::transform(arguments, std::back_inserter(texts),
                         [](const std::string& argument) { return Encode(argument); });
  CallArguments given(std::move(texts));
  const std::int32_t result = called.function(given);
  return {result, called.fields.empty() ? std::nullopt : given.Record()};
}

std::optional<DeliveredRecord> ReadExport(std::string_view name,
                                          const std::vector<std::string>& arguments) {
  const Export& called = ExportNamed(name);
  const CallOutcome outcome = CallExport(called, arguments);
  if (!outcome.ansiRecord) return std::nullopt;
  DeliveredRecord record(called, *outcome.ansiRecord);
  return record.IsComplete() ? std::optional(std::move(record)) : std::nullopt;
}

namespace {

std::string WhyWithoutNames(const DeliveredRecord& record, std::size_t expected) {
  const std::size_t fields = record.Fields().size();
  const std::string why = fields == expected
                              ? "A field does not look like its name, as when a text holds a \"|\""
                              : "The record has " + std::to_string(fields) + " fields instead of " +
                                    std::to_string(expected);
  return why + ", so they go without names.\n";
}

}  // namespace

std::string DescribeCall(std::string_view name, const std::vector<std::string>& arguments) {
  const Export& called = ExportNamed(name);
  const CallOutcome outcome = CallExport(called, arguments);
  std::string lines = std::string("kind: ") + KindName() + "\n" +
                      "result: " + std::to_string(outcome.result) + "  (" +
                      std::string(called.meaning) + ")\n";
  if (called.fields.empty()) return lines;
  if (!outcome.ansiRecord) return lines + "record: none; the buffer was left as it was\n";
  const DeliveredRecord record(called, *outcome.ansiRecord);
  lines += "record: " + record.Text() + "\n";
  if (!record.IsComplete()) lines += WhyWithoutNames(record, called.fields.size());
  constexpr std::size_t kNameColumns = 20;
  for (std::size_t i = 0; i < record.Fields().size(); ++i) {
    const std::string number = std::to_string(i + 1);
    const std::string_view fieldName = record.IsComplete() ? record.NameAt(i) : "";
    lines += std::string(4 - number.size(), ' ') + number + "  " +
             PaddedRight(fieldName, kNameColumns) + "  " + record.Fields()[i] + "\n";
  }
  return lines;
}

}  // namespace office
