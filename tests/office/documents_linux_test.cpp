// What is written down for people beside the code, against the code: what authors of macros are
// told and given, against what callers in C are given and what the tool knows of the exports; the
// document of the record files against their declarations. That the module for macros does what it
// says, scripts/check_macros proves.
#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "office/export_table.h"
#include "office/record_text.h"
#include "office/sample_file.h"
#include "office/text_encoding.h"
#include "record_files.h"
#include "sample_office.h"
#include "testkit/files.h"

namespace office {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::UnorderedElementsAreArray;

// Each pattern is a regular expression; they are replaced one after the other.
std::string Replaced(std::string text,
                     const std::vector<std::pair<std::string, std::string>>& replacements) {
  for (const auto& [pattern, by] : replacements) {
    text = std::regex_replace(text, std::regex(pattern), by);
  }
  return text;
}

// Of a file of the project, by its path in it.
std::string ProjectFile(const std::string& name) {
  std::string text = testkit::ReadAll(QLX99_PROJECT "/" + name);
  EXPECT_FALSE(text.empty()) << name;
  return text;
}

// The first group of every match; lines that are continued count as one.
std::vector<std::string> All(const std::string& text, const char* pattern) {
  const std::string flat = Replaced(text, {{"( _)?\\s+", " "}});
  const std::regex regex(pattern);
  std::vector<std::string> found;
  std::transform(std::sregex_iterator(flat.begin(), flat.end(), regex), {},
                 std::back_inserter(found), [](const std::smatch& match) { return match.str(1); });
  return found;
}

// Of every export: "UserNext(const char* index, char* record)".
std::vector<std::string> Prototypes() {
  return All(ProjectFile("qlx99/qlx99.h"), "int WINAPI (\\w+\\([^)]*\\));");
}

std::string Lower(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

// The compiler compares no names of arguments.
TEST(ExportList, NamesWhatTheHeaderDeclaresAndIsDocumented) {
  const std::string document =
      Replaced(ProjectFile("docs/exports.md"), {{"\n(\\| \\d+ \\| `\\w+` \\|).*", "\n$1"}});
  std::string declared;
  for (const std::string& prototype : Prototypes()) {
    declared += "\n  " + Replaced(prototype, {{"const char\\* |int |void", ""},
                                              {",? ?char\\* \\w+", ""},
                                              {"\\(\\)", ""},
                                              {"\\(|, ", " "},
                                              {"\\)", ""}});
    const std::string call =
        Replaced(prototype, {{"(const char\\*|char\\*|int) ", ""}, {"void", ""}});
    const std::size_t begin = document.find("\n### `" + call + "`\n");
    ASSERT_NE(begin, std::string::npos) << call;
    const std::string section = document.substr(begin, document.find("\n#", begin + 1) - begin);
    std::string fields;
    int number = 0;
    for (const Field& field : ExportNamed(call.substr(0, call.find('('))).fields) {
      fields += "| " + std::to_string(++number) + " | `" + std::string(field.name) + "` |\n";
    }
    EXPECT_EQ(prototype.find(", char* ") == prototype.npos, fields.empty());
    if (fields.empty()) {
      EXPECT_THAT(section, Not(HasSubstr("| No. |"))) << call;
    } else {
      EXPECT_THAT(section, HasSubstr("| No. | Field | Content |\n|---|---|---|\n" + fields + "\n"));
    }
  }
  EXPECT_EQ(ExportList(), declared);
}

// Whoever is shown a message looks for its words.
TEST(Documents, QuoteTheLibraryWordForWord) {
  const std::string document = Replaced(
      ProjectFile("docs/exports.md"), {{"\\s+", " "}, {"ZT[A-Z.]+KRV", "%s"}, {">\\w+<", ">%s<"}});
  for (const std::string& text :
       All(ProjectFile("qlx99/frame/messages.h"), "(?:Title = |u8)\"([^\"]*)\"")) {
    std::istringstream message(Replaced(text, {{"\\\\n", "\n"}}));
    for (std::string line; std::getline(message, line);) {
      EXPECT_THAT(document, HasSubstr('"' + std::string(Trimmed(line)) + '"'));
    }
  }
}

class QlxLetter : public SampleOffice {};

TEST_F(QlxLetter, IsTheOneThatIsShownToNewcomers) {
  const std::string document = ProjectFile("README.md");
  const std::size_t begin = document.find("\n    Herrn\n");
  const std::string shown = document.substr(begin, document.find("\n\nThe same", begin) - begin);
  const Outcome letter = Qlx("letter|12345678");
  EXPECT_EQ("\n" + Replaced(letter.out, {{"Nr.:       \\d+", "Nr.:       1"}}),
            Replaced(shown, {{"\n    ", "\n"}}) + "\n");
  EXPECT_EQ(letter.err, "");
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

// By types and order; what a parameter is called there is Basic's business. A name without "Alias"
// would be looked for in the letters that the office's own code gives it.
TEST(MacroInterface, DeclaresEachExportAsTheHeaderDoes) {
  std::vector<std::string> expected;
  for (const std::string& prototype : Prototypes()) {
    expected.push_back(
        Replaced(prototype, {{"void", ""},
                             {"(const )?char\\* \\w+", "ByVal String"},
                             {"int \\w+", "ByVal Long"},
                             {"^(\\w+)(.*)", "$1 Lib \"qlx99.dll\" Alias \"$1\" $2 As Long"}}));
  }
  const std::string module =
      Replaced(ProjectFile("macros/qlx99.bas"), {{"ByVal \\w+ As ", "ByVal "}});
  EXPECT_EQ(All(module, "\\bDeclare Function ([^)]*\\) As \\w+)"), expected);
}

TEST(MacroInterface, ReadsEachRecordIntoItsFieldsInTheirOrder) {
  const std::string module = Lower(Replaced(
      ProjectFile("macros/qlx99.bas"), {{"= \\w+\\((?:\"[^\"]*\", )?theFields", "= theFields"}}));
  std::vector<std::string> expected;
  for (const Export& one : Exports()) {
    for (std::size_t i = 0; i < one.fields.size(); ++i) {
      const std::string field = Lower(std::string(one.fields[i].name));
      if (field != "path") expected.push_back(field + " = thefields(" + std::to_string(i) + ")");
    }
  }
  EXPECT_THAT(All(module, "theentry\\.(\\w+ = thefields\\(\\d+\\))"),
              UnorderedElementsAreArray(expected));
}

}  // namespace
}  // namespace office
