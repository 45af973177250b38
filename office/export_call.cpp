#include "office/export_call.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "office/failure.h"
#include "office/install_kind.h"
#include "office/text_encoding.h"

namespace office {

DeliveredRecord::DeliveredRecord(const Export& from, std::string_view ansi) : from_(&from) {
  for (std::size_t begin = 0; begin <= ansi.size();) {
    const std::size_t end = std::min(ansi.find('|', begin), ansi.size());
    fields_.push_back(Decode(ansi.substr(begin, end - begin)));
    begin = end + 1;
  }
  std::ranges::transform(fields_, std::back_inserter(trimmed_),
                         [](const std::string& field) { return std::string(Trimmed(field)); });
}

const std::string& DeliveredRecord::operator[](std::string_view name) const {
  const auto found = std::ranges::find(from_->fields, name);
  if (!IsComplete() || found == from_->fields.end()) {
    throw std::logic_error(std::string(from_->name) + " has no field " + std::string(name));
  }
  return trimmed_[static_cast<std::size_t>(found - from_->fields.begin())];
}

CallOutcome CallExport(const Export& called, const std::vector<std::string>& arguments) {
  if (arguments.size() > called.arguments.size()) {
    throw WrongUsage(std::string(called.name) + " takes " +
                     std::to_string(called.arguments.size()) + " arguments, not " +
                     std::to_string(arguments.size()) + "; the buffer is not one of them.");
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

std::string DescribeCall(std::string_view name, const std::vector<std::string>& arguments) {
  const Export& called = ExportNamed(name);
  const CallOutcome outcome = CallExport(called, arguments);
  std::string lines = std::string("kind: ") + KindName() + "\n" +
                      "result: " + std::to_string(outcome.result) + "  (" +
                      std::string(called.meaning) + ")\n";
  if (called.fields.empty()) return lines;
  if (!outcome.ansiRecord) return lines + "record: none; the buffer was left as it was\n";
  const DeliveredRecord record(called, *outcome.ansiRecord);
  lines += "record: " + Decode(*outcome.ansiRecord) + "\n";
  if (!record.IsComplete()) {
    lines += "The record has " + std::to_string(record.Fields().size()) + " fields instead of " +
             std::to_string(called.fields.size()) + ", so they go without names.\n";
  }
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
