// Calls of exports, as macros make them, and what they deliver.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "office/export_table.h"

namespace office {

// For whom a record is read: people are shown control characters as their numbers.
enum class Reader { kPerson, kProgram };

// A record whose fields go by their names. A "|" in a free text does not divide it.
class DeliveredRecord {
 public:
  DeliveredRecord(const Export& from, std::string_view ansi, Reader reader = Reader::kPerson);

  // Whether it has as many fields as its export's records have when nothing is missing, each in
  // its form. Only then do the names belong to the fields.
  bool IsComplete() const { return complete_; }

  // The whole record, UTF-8.
  const std::string& Text() const { return text_; }

  // UTF-8, without the blanks at either end; of a complete record only.
  const std::string& operator[](std::string_view name) const;

  // In their order, as they stand.
  const std::vector<std::string>& Fields() const { return fields_; }
  std::string_view NameAt(std::size_t index) const { return from_->fields.at(index).name; }

 private:
  const Export* from_;
  std::string text_;
  std::vector<std::string> fields_;  // UTF-8
  std::vector<std::string> trimmed_;
  bool complete_;
};

struct CallOutcome {
  std::int32_t result;
  std::optional<std::string> ansiRecord;  // when the export wrote one
};

// Arguments are UTF-8, without the buffer; those that are left out at the end are null pointers.
// Fails for an unknown export, more arguments than it takes, or a character without a place in
// Windows-1252.
CallOutcome CallExport(const Export& called, const std::vector<std::string>& arguments);

// The same, for a record all of whose fields are needed: nothing when it was not delivered or is
// not complete.
std::optional<DeliveredRecord> ReadExport(std::string_view name,
                                          const std::vector<std::string>& arguments);

// The lines that `qlx call` prints.
std::string DescribeCall(std::string_view name, const std::vector<std::string>& arguments);

}  // namespace office
