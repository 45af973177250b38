#include "office/sample_file.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "office/failure.h"
#include "office/record_text.h"
#include "office/text_encoding.h"

namespace office {
namespace {

using qlx99::FieldInfo;

// Reads line by line; a record is complete at the blank line, or the end, behind it.
class SampleParser {
 public:
  explicit SampleParser(const qlx99::RecordLayout& layout) : layout_(layout) {}

  void AddLine(std::string_view line) {
    if (line.starts_with('#')) return;
    if (line.empty()) return EndRecord();
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) {
      throw Failure("\"" + std::string(line) + "\" is no line of the form \"name: value\".");
    }
    const FieldInfo& field = FieldNamed(Trimmed(line.substr(0, colon)));
    if (!seen_.insert(field.offset).second) {
      throw Failure(std::string(field.name) + " stands twice in one record.");
    }
    if (record_.empty()) record_ = BlankRecord(layout_);
    SetField(field, Trimmed(line.substr(colon + 1)), record_);
  }

  void EndRecord() {
    if (!record_.empty()) records_.push_back(std::move(record_));
    record_.clear();
    seen_.clear();
  }

  std::vector<std::string> TakeRecords() { return std::move(records_); }

 private:
  const FieldInfo& FieldNamed(std::string_view name) const {
    const auto found = std::ranges::find_if(
        layout_.fields, [name](const FieldInfo& field) { return field.name == name; });
    if (found != layout_.fields.end()) return *found;
    throw Failure(std::string(layout_.file.name) + " has no field \"" + std::string(name) +
                  "\". It has: " + FieldNames() + ".");
  }

  std::string FieldNames() const {
    std::string names;
    for (const FieldInfo& field : layout_.fields) {
      names += (names.empty() ? "" : ", ") + std::string(field.name);
    }
    return names;
  }

  const qlx99::RecordLayout& layout_;
  std::string record_;  // empty between records
  std::set<std::uint16_t> seen_;
  std::vector<std::string> records_;
};

// "ZTCASE.KRV" as "ztcase.txt".
std::string SampleNameOf(const qlx99::RecordLayout& layout) {
  const std::string_view file = layout.file.name;
  std::string name(file.substr(0, file.find('.')));
  std::ranges::transform(name, name.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return name + ".txt";
}

}  // namespace

std::vector<std::string> ParseSample(const qlx99::RecordLayout& layout, const SampleText& sample) {
  SampleParser parser(layout);
  std::string_view rest = sample.text;
  for (int lineNumber = 1; !rest.empty(); ++lineNumber) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    try {
      parser.AddLine(Trimmed(rest.substr(0, end)));
    } catch (const Failure& failure) {
      throw Failure(std::string(sample.name) + ":" + std::to_string(lineNumber) + ": " +
                    failure.what());
    }
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  parser.EndRecord();
  return parser.TakeRecords();
}

std::vector<std::string> SampleRecords(const qlx99::RecordLayout& layout) {
  const std::string name = SampleNameOf(layout);
  for (const SampleText& sample : SampleTexts()) {
    if (sample.name == name) return ParseSample(layout, sample);
  }
  return {};
}

}  // namespace office
