// The library's list of exports as data, and calls of any of them with texts.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/result_line.h"

namespace office {

// The arguments of one call. The buffer is full of blanks, as a macro's is.
class CallArguments {
 public:
  // In the order of the export's arguments, without the buffer; missing ones are null pointers.
  explicit CallArguments(std::vector<std::string> ansiTexts);

  // The next argument of an export, by its type: a text, the buffer or a number.
  template <class Parameter>
  Parameter Next();

  // The export's result in the buffer (delivered_text.h). Nothing when the buffer is as it was.
  std::optional<std::string> Record() const;

 private:
  std::vector<std::string> texts_;
  std::size_t next_ = 0;
  std::array<char, qlx99::kCallerBufferSize> buffer_{};
};

// What a field holds, as far as its text shows. A text of the office may hold the "|" that divides
// the fields, and then it shows in the others.
enum class Form : std::uint8_t {
  kText,
  kFreeText,      // as users write it; the one field of a record that may have a "|" in it
  kFilled,        // text that is never empty
  kNumber,        // in decimal
  kNumberOrNone,  // the same, or empty
  kDate,          // DD.MM.YYYY, or empty
  kAmount,        // in German notation, or empty
  kRelationCode,  // two characters
};

struct Field {
  std::string name;
  Form form = Form::kText;
};

struct Export {
  std::string_view name;
  std::vector<std::string> arguments;  // without the buffer
  std::vector<Field> fields;           // of the record; none: there is no buffer
  std::string_view meaning;            // of its result
  std::function<std::int32_t(CallArguments&)> function;
};

// Every export that a macro can call, in the order of their list.
std::span<const Export> Exports();

// A line for each, with its arguments, behind a line break.
std::string ExportList();

// Fails with the list of all exports when there is none of that name.
const Export& ExportNamed(std::string_view name);

}  // namespace office
