// What is written down for people beside the code, against the code: what authors of macros are
// given, the module and the document, against what callers in C are given and what the tool knows
// of the exports; the document of the record files against their declarations.
#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "office/export_call.h"
#include "office/export_table.h"
#include "office/record_text.h"
#include "office/sample_file.h"
#include "office/text_encoding.h"
#include "record_files.h"
#include "sample_office.h"

namespace office {
namespace {

using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::UnorderedElementsAreArray;

std::string Replaced(std::string text,
                     const std::vector<std::pair<const char*, const char*>>& replacements) {
  for (const auto& [pattern, by] : replacements) {
    text = std::regex_replace(text, std::regex(pattern), by);
  }
  return text;
}

std::string ProjectFile(const std::string& name) {
  std::ifstream file(QLX99_PROJECT "/" + name);
  std::string text{std::istreambuf_iterator<char>(file), {}};
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

// "UserNext(const char* index, char* record)"
std::vector<std::string> Prototypes() {
  return All(ProjectFile("qlx99/qlx99.h"), "int WINAPI (\\w+\\([^)]*\\));");
}

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

std::string Lower(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

TEST(MacroInterface, DeclaresEachExportAsTheHeaderDoes) {
  std::vector<std::string> expected;
  for (const std::string& prototype : Prototypes()) {
    expected.push_back(Replaced(prototype, {{"void", ""},
                                            {"(const )?char\\* (\\w+)", "ByVal $2 As String"},
                                            {"\\bint (\\w+)", "ByVal $1 As Long"},
                                            {"^(\\w+)", "$1 Lib \"qlx99.dll\" "}}) +
                       " As Long");
  }
  EXPECT_EQ(All(ProjectFile("macros/qlx99.bas"), "Declare Function ([^)]*\\) As \\w+)"), expected);
}

TEST(MacroInterface, ReadsEachRecordIntoItsFieldsInTheirOrder) {
  const std::string module = Replaced(Lower(ProjectFile("macros/qlx99.bas")),
                                      {{"(public type|dim found as) \\w+", "$1"},
                                       {" as (string|long)\n", "\n"},
                                       {"numberof\\((.*)\\)\n", "$1\n"},
                                       {"formedas\\(.*, (.*)\\)\n", "$1\n"},
                                       {"fieldsof\\(.*\\), (\\d+), .*?(, \\d)?\\)\n", "$1$2\n"},
                                       {"\\w+ = found\n", "= found\n"}});
  for (const Export& one : Exports()) {
    if (one.fields.empty() || one.fields.front().name == "path") continue;
    std::string type = Lower("' " + std::string(one.name)) + "\npublic type\n";
    const auto freeText = std::ranges::find(one.fields, Form::kFreeText, &Field::form);
    std::string reading = "fields = " + std::to_string(one.fields.size());
    if (freeText != one.fields.end()) {
      reading += ", " + std::to_string(freeText - one.fields.begin());
    }
    reading += "\n    dim found as\n";
    for (std::size_t i = 0; i < one.fields.size(); ++i) {
      const std::string field = Lower(std::string(one.fields[i].name));
      type += "    " + field + "\n";
      reading += "    found." + field + " = fields(" + std::to_string(i) + ")\n";
    }
    EXPECT_THAT(module, HasSubstr(type + "end type\n"));
    EXPECT_THAT(module, HasSubstr(reading + "    = found\n"));
  }
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

std::vector<std::string> Documents() {
  std::vector<std::string> names = {"README.md", "CONTRIBUTING.md", "install/INSTALL.txt"};
  for (const std::string& folder : {std::string("docs"), std::string("macros")}) {
    for (const auto& entry : std::filesystem::directory_iterator(QLX99_PROJECT "/" + folder)) {
      if (entry.is_regular_file()) names.push_back(folder + "/" + entry.path().filename().string());
    }
  }
  return names;
}

// Between quotation marks or under a picture, with "%s" for the names in it; of a module in Basic
// in its comments only.
std::vector<std::string> QuotesIn(const std::string& document) {
  std::string text = ProjectFile(document);
  if (document.ends_with(".bas")) text = Replaced(text, {{"\n[^'\n][^\n]*", ""}});
  text =
      Replaced(text, {{"!\\[([^\\]]*)\\]", "\"$1\""}, {"ZT[A-Z.]+KRV", "%s"}, {">\\w+<", ">%s<"}});
  EXPECT_EQ(std::ranges::count(text, '"') % 2, 0) << document;
  return All(text, "\"([^\"]*)\"");
}

// By its end or its first word, so that a slip in the rest shows.
bool LooksLikeOneOf(const std::set<std::string>& shown, const std::string& quote) {
  const auto firstWord = [](const std::string& text) { return text.substr(0, text.find(' ')); };
  return quote.ends_with(" !") || quote.ends_with(" auswählen") ||
         std::ranges::find(shown, firstWord(quote), firstWord) != shown.end();
}

// Whoever is shown a message looks for its words.
TEST(Documents, QuoteTheLibraryWordForWord) {
  const auto messages = TextsOf("qlx99/frame/messages.h", "(?:Title = |u8)\"([^\"]*)\"");
  std::set<std::string> shown = messages;
  shown.merge(TextsOf("qlx99/parties/role.cpp", "u8\"([^\"]* auswählen)\""));
  shown.merge(TextsOf("qlx99/resources/qlx99.rc", "(?:CAPTION|CONTROL) \"([^\"]+)\""));
  for (const std::string& document : Documents()) {
    for (const std::string& quote : QuotesIn(document)) {
      EXPECT_TRUE(shown.contains(quote) || !LooksLikeOneOf(shown, quote))
          << document << ": " << quote;
    }
  }
  EXPECT_THAT(QuotesIn("docs/exports.md"), IsSupersetOf(messages));
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
