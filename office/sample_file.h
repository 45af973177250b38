// The sample office's texts. One file holds the records of one record file:
//
//   # A comment.
//   number: 1
//   name: Rechtsanwalt Dr. Jan Merten
//
//   number: 2
//   ...
//
// Fields go by the names of the record file's declaration and have the forms of record_text.h; a
// field that is left out is 0, blank or no date. Blank lines divide the records.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/record_layout.h"

namespace office {

struct SampleText {
  std::string_view name;  // "ztcase.txt"
  std::string_view text;  // UTF-8
};

// The texts built into the program, one for each record file.
std::span<const SampleText> SampleTexts();

// The records in the order of the text. A mistake fails with its place, as in "ztcase.txt:12: ...".
std::vector<std::string> ParseSample(const qlx99::RecordLayout& layout, const SampleText& sample);

// The built-in records of a record file.
std::vector<std::string> SampleRecords(const qlx99::RecordLayout& layout);

}  // namespace office
