// What is written down for people beside the code, against the code: what authors of macros are
// told, against what callers in C are given and what the tool knows of the exports; the document of
// the record files against their declarations.
#include <gmock/gmock.h>

#include <algorithm>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "office/export_call.h"
#include "office/export_table.h"
#include "office/record_text.h"
#include "office/sample_file.h"
#include "office/text_encoding.h"
#include "project_text.h"
#include "record_files.h"
#include "sample_office.h"

namespace office {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::UnorderedElementsAreArray;

// The compiler compares no names of arguments.
TEST(ExportList, NamesEachExportAndItsArgumentsAsTheHeaderDoes) {
  std::string declared;
  for (const std::string& prototype : Prototypes()) {
    declared += "\n  " + Replaced(prototype, {{"const char\\* |int |void", ""},
                                              {",? ?char\\* \\w+", ""},
                                              {"\\(\\)", ""},
                                              {"\\(|, ", " "},
                                              {"\\)", ""}});
    const bool hasRecord = prototype.find(", char* ") != prototype.npos;
    EXPECT_EQ(hasRecord, !ExportNamed(prototype.substr(0, prototype.find('('))).fields.empty());
  }
  EXPECT_EQ(ExportList(), declared);
}

TEST(MacroInterface, DocumentsEachExportWithItsArgumentsAndFields) {
  const std::string document =
      Replaced(ProjectFile("docs/exports.md"), {{"\n(\\| \\d+ \\| `\\w+` \\|).*", "\n$1"}});
  for (const std::string& prototype : Prototypes()) {
    const std::string call =
        Replaced(prototype, {{"(const char\\*|char\\*|int) ", ""}, {"void", ""}});
    const std::size_t begin = document.find("\n### `" + call + "`\n");
    ASSERT_NE(begin, std::string::npos) << call;
    const std::string section = document.substr(begin, document.find("\n#", begin + 1) - begin);
    std::string fields;
    for (const Field& field : ExportNamed(call.substr(0, call.find('('))).fields) {
      const auto number = static_cast<std::size_t>(std::ranges::count(fields, '\n') + 1);
      fields += "| " + std::to_string(number) + " | `" + std::string(field.name) + "` |\n";
    }
    if (fields.empty()) {
      EXPECT_THAT(section, Not(HasSubstr("| No. |"))) << call;
    } else {
      EXPECT_THAT(section, HasSubstr("| No. | Field | Content |\n|---|---|---|\n" + fields + "\n"));
    }
  }
}

// Every text that the user is shown, the lines of a message one by one.
std::set<std::string> TextsOf(const char* source, const char* pattern) {
  std::set<std::string> lines;
  for (const std::string& text : All(ProjectFile(source), pattern)) {
    std::istringstream message(Replaced(text, {{"\\\\n", "\n"}}));
    for (std::string line; std::getline(message, line);) lines.emplace(Trimmed(line));
  }
  return lines;
}

// Whoever is shown a message looks for its words.
TEST(Documents, QuoteTheLibraryWordForWord) {
  const std::string document = Replaced(
      ProjectFile("docs/exports.md"), {{"\\s+", " "}, {"ZT[A-Z.]+KRV", "%s"}, {">\\w+<", ">%s<"}});
  for (const std::string& line : TextsOf("qlx99/frame/messages.h", "(?:Title = |u8)\"([^\"]*)\"")) {
    EXPECT_THAT(document, HasSubstr('"' + line + '"'));
  }
}

class QlxLetter : public SampleOffice {};

TEST_F(QlxLetter, IsTheOneThatIsShownToNewcomers) {
  const std::string document = ProjectFile("README.md");
  const std::size_t begin = document.find("\n    Herrn\n");
  const std::string shown = document.substr(begin, document.find("\n\nThe same", begin) - begin);
  const int last = CallExport(ExportNamed("GetDokuNr"), {"12345678"}).result;
  const std::string number = "Nr.:       " + std::to_string(last + 1);
  const Outcome letter = Qlx("letter|12345678");
  EXPECT_EQ("\n" + letter.out,
            Replaced(shown, {{"\n    ", "\n"}, {"Nr.:       1", number.c_str()}}) + "\n");
  EXPECT_EQ(letter.err, "");
  EXPECT_EQ(letter.code, 0);
}

// Numbers its documents from 1.
class QlxExamples : public SampleOffice {};

// "GetDocuRoot(260, path)" without the buffer: the texts and numbers.
std::vector<std::string> ArgumentsIn(const std::string& call) {
  std::vector<std::string> arguments;
  const std::regex argument("\"([^\"]*)\"|\\b(\\d+)\\b");
  for (std::sregex_iterator at(call.begin(), call.end(), argument), end; at != end; ++at) {
    arguments.push_back(at->str(at->str(2).empty() ? 1 : 2));
  }
  return arguments;
}

// In one order, as macros would run them in the sample office of the package. Behind a call stands
// its record, or else its result; "..." stands for any fields.
TEST_F(QlxExamples, GiveWhatIsWrittenBehindThem) {
  const std::string document = ProjectFile("docs/exports.md");
  const std::regex example("\n    [^'\n]*?(\\w+)\\(([^'\n]*)\\)[^'\n]*(?:\n   )? *' ([^\n]*)");
  std::set<std::string_view> shown;
  for (std::sregex_iterator at(document.begin(), document.end(), example), end; at != end; ++at) {
    const Export& called = ExportNamed(at->str(1));
    shown.insert(called.name);
    const CallOutcome outcome = CallExport(called, ArgumentsIn(at->str(2)));
    std::string given =
        outcome.ansiRecord ? Decode(*outcome.ansiRecord) : std::to_string(outcome.result);
    if (given.starts_with(Folder())) {
      given = "C:\\qlx99\\office" + Replaced(given.substr(Folder().size()), {{"/", "\\"}});
    }
    const std::string pattern =
        Replaced(at->str(3), {{"[.|()$+*?\\[\\]{}\\\\]", "\\$&"}, {"(\\\\\\.){3}", ".*"}});
    EXPECT_TRUE(std::regex_match(given, std::regex(pattern))) << at->str() << "\n    ' " << given;
  }
  EXPECT_EQ(shown.size(), Exports().size());
}

// The lines that state something: a heading, and below it length, keys and fields, the latter
// without the last column.
std::vector<std::string> DocumentedRecordFiles() {
  std::vector<std::string> found;
  std::istringstream document(ProjectFile("docs/records.md"));
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with("### ")) found.push_back(line);
    if (!std::regex_search(line, std::regex("^(Length|Key|\\| \\d)"))) continue;
    found.back() += "\n" + Replaced(line, {{"[^|]*\\|$", ""}});
  }
  return found;
}

// The layout is the case-management system's. A slip in a declaration would read other bytes than
// are there, and no other test would see it, as they all write by the same declarations.
TEST(RecordFiles, LieAsTheyAreDocumented) {
  const char* const kinds[] = {"integer", "day", "amount", "text", "OEM text"};
  const char* const keyKinds[] = {"unique", "duplicates", "autoincrement"};
  std::vector<std::string> expected;
  for (const qlx99::RecordLayout& layout : qlx99::kRecordFiles) {
    const std::vector<std::string> sample = SampleRecords(layout);
    ASSERT_FALSE(sample.empty()) << "No sample record: " << layout.file.name;
    std::ostringstream file;
    file << "### `" << layout.file.name << "`\nLength " << layout.file.length << ".";
    for (const qlx99::Key& key : layout.keys) {
      file << "\nKey " << +key.number << ": `" << key.field.name << "`, bytes " << key.field.offset
           << " to " << key.field.offset + key.field.width - 1 << ", " << keyKinds[key.kind]
           << (key.isUsed ? "." : "; not used.");
    }
    for (const qlx99::FieldInfo& field : layout.fields) {
      file << "\n| " << field.offset << " | " << field.width << " | "
           << kinds[static_cast<std::size_t>(field.kind)] << " | `" << field.name << "` | "
           << FieldText(field, sample.front()) << " |";
    }
    expected.push_back(file.str());
  }
  EXPECT_THAT(DocumentedRecordFiles(), UnorderedElementsAreArray(expected));
}

}  // namespace
}  // namespace office
