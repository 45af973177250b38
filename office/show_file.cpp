#include "office/show_file.h"

#include <algorithm>
#include <cctype>
#include <ostream>
#include <string>

#include "frame/registry.h"
#include "office/failure.h"
#include "office/host.h"
#include "office/record_manager.h"
#include "office/record_text.h"
#include "office/text_encoding.h"
#include "record_files.h"

namespace office {
namespace {

using qlx99::FieldInfo;
using qlx99::FieldKind;
using qlx99::RecordLayout;

constexpr std::size_t kWideTerminal = 132;

bool IsText(const FieldInfo& field) {
  return field.kind == FieldKind::kText || field.kind == FieldKind::kOemText;
}

// Known before the first record is read, so that no record has to wait for the last.
std::size_t ColumnsFor(const FieldInfo& field) {
  constexpr std::size_t kNumberColumns = 11;
  constexpr std::size_t kAmountColumns = 16;
  const std::size_t name = std::string_view(field.name).size();
  if (IsText(field)) return std::max<std::size_t>(name, field.width);
  if (field.kind == FieldKind::kDayNumber) return std::max(name, qlx99::kDateLength);
  return std::max(name, field.kind == FieldKind::kAmount ? kAmountColumns : kNumberColumns);
}

std::string Cell(const FieldInfo& field, const std::string& text) {
  const std::size_t columns = ColumnsFor(field);
  if (IsText(field)) return PaddedRight(text, columns) + "  ";
  return std::string(columns - std::min(columns, ColumnsOf(text)), ' ') + text + "  ";
}

// `textOf` gives a field's text.
template <class TextOf>
std::string TableLine(const RecordLayout& layout, const TextOf& textOf) {
  std::string line;
  for (const FieldInfo& field : layout.fields) line += Cell(field, textOf(field));
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

std::string Block(const RecordLayout& layout, const std::string& record) {
  std::string block;
  for (const FieldInfo& field : layout.fields) {
    const std::string text = FieldText(field, record);
    block += std::string(field.name) + (text.empty() ? ":" : ": ") + text + "\n";
  }
  return block + "\n";
}

bool FitsInALine(const RecordLayout& layout) {
  std::size_t columns = 0;
  for (const FieldInfo& field : layout.fields) columns += ColumnsFor(field) + 2;
  return columns <= kWideTerminal;
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(),
                         [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return upper;
}

}  // namespace

std::filesystem::path ConfiguredDataRoot() {
  const auto dataRoot = qlx99::ReadConfiguration<qlx99::kDataRoot>();
  if (dataRoot && dataRoot->front() != '\0') return dataRoot->data();
  throw Failure("No office is configured: the registry has no DataRoot below " +
                std::string(qlx99::kOptionsKey) + ". `qlx setup DIR` writes it.");
}

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

void ShowFile(std::string_view name, std::ostream& out) {
  const RecordLayout& layout = RecordFileNamed(name);
  const RecordManager manager;
  TableFile file(manager, ConfiguredDataRoot(), layout);
  const bool inLines = FitsInALine(layout);
  if (inLines) {
    out << TableLine(layout, [](const FieldInfo& field) { return std::string(field.name); });
  }
  for (auto record = file.First(); record; record = file.Next()) {
    if (inLines) {
      out << TableLine(layout, [&](const FieldInfo& field) { return FieldText(field, *record); });
    } else {
      out << Block(layout, *record);
    }
  }
}

}  // namespace office
