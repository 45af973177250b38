#include "office/show_file.h"

#include <ostream>
#include <string>

#include "office/failure.h"
#include "office/readiness.h"
#include "office/record_manager.h"
#include "office/record_text.h"
#include "office/text_encoding.h"
#include "record_files.h"

namespace office {
namespace {

using qlx99::FieldInfo;
using qlx99::RecordLayout;

// In quotation marks, doubled where they stand in it, when a comma or a mark would divide it.
std::string CsvCell(const std::string& text) {
  if (text.find_first_of(",\"") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

// `textOf` gives a field's text.
template <class TextOf>
std::string CsvLine(const RecordLayout& layout, const TextOf& textOf) {
  std::string line;
  for (const FieldInfo& field : layout.fields) line += CsvCell(textOf(field)) + ",";
  line.back() = '\n';
  return line;
}

std::string Block(const RecordLayout& layout, const std::string& record) {
  std::string block;
  for (const FieldInfo& field : layout.fields) {
    const std::string text = FieldText(field, record);
    block += std::string(field.name) + (text.empty() ? ":" : ": ") + text + "\n";
  }
  return block + "\n";
}

}  // namespace

const RecordLayout& RecordFileNamed(std::string_view name) {
  const std::string wanted = UpperCase(name);
  std::string names;
  for (const RecordLayout& layout : qlx99::kRecordFiles) {
    const std::string_view file = layout.file.name;
    const std::string_view stem = file.substr(0, file.find('.'));
    if (wanted == file || wanted == stem) return layout;
    names.append(" ").append(stem);
  }
  throw WrongUsage("There is no record file \"" + std::string(name) + "\". There are:" + names);
}

void ShowFile(std::string_view name, Listing listing, std::ostream& out) {
  const RecordLayout& layout = RecordFileNamed(name);
  const RecordManager manager;
  TableFile file(manager, ExistingDataRoot(), layout, btrieve::kOpenReadOnly);
  const bool inCsv = listing == Listing::kCsv;
  if (inCsv) out << CsvLine(layout, [](const FieldInfo& field) { return field.name; });
  for (auto record = file.First(); record; record = file.Next()) {
    const auto textOf = [&](const FieldInfo& field) { return FieldText(field, *record); };
    out << (inCsv ? CsvLine(layout, textOf) : Block(layout, *record));
  }
}

}  // namespace office
