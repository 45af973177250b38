// The module for macros, against what callers in C are given and what the tool knows of the
// exports. That it does what it says, scripts/check_macros proves.
#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <regex>
#include <string>
#include <vector>

#include "office/export_call.h"
#include "office/export_table.h"
#include "project_text.h"

namespace office {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

// A name as the module has it. One of one word would change the letters of the office's own code,
// "text" those of ".Text"; so it is called "theText".
std::string InBasic(std::string name) {
  if (Lower(name) != name) return name;
  name[0] = static_cast<char>(std::toupper(name[0]));
  return "the" + name;
}

// "UserNext(ByVal theIndex As String, ByVal theRecord As String) As Long"
std::string BasicHead(const std::string& prototype) {
  std::string head = Replaced(prototype, {{"void", ""}});
  const std::regex parameter("(?:const )?(char\\*|int) (\\w+)");
  for (std::smatch found; std::regex_search(head, found, parameter);) {
    const char* const type = found.str(1) == "int" ? " As Long" : " As String";
    head = found.prefix().str() + "ByVal " + InBasic(found.str(2)) + type + found.suffix().str();
  }
  return head + " As Long";
}

// Of its buffer, or empty without one.
std::string BufferName(const std::string& prototype) {
  std::smatch buffer;
  return std::regex_search(prototype, buffer, std::regex(", char\\* (\\w+)")) ? InBasic(buffer[1])
                                                                              : "";
}

// A name without "Alias" would be looked for in the letters that the office's own code gives it.
TEST(MacroInterface, DeclaresEachExportAsTheHeaderDoes) {
  std::vector<std::string> expected;
  for (const std::string& prototype : Prototypes()) {
    expected.push_back(
        Replaced(BasicHead(prototype), {{"^(\\w+)", "$1 Lib \"qlx99.dll\" Alias \"$1\" "}}));
  }
  EXPECT_EQ(All(ProjectFile("macros/qlx99.bas"), "\\bDeclare Function ([^)]*\\) As \\w+)"),
            expected);
}

// What stands behind the record in the buffer.
std::string EndOfRecord(const std::string& name) {
  const std::string document = ProjectFile("docs/exports.md");
  const std::size_t begin = document.find("### `" + name + "(");
  const std::string section = document.substr(begin, document.find("| No. |", begin) - begin);
  return section.find("*blanks*") == section.npos ? "Chr$(0)" : "\"\"";
}

// The functions that stand for the exports in 64-bit word processors take the same, and hand it on
// to the method of the same name.
TEST(MacroInterface, CallsEachExportByAutomationAsItDeclaresIt) {
  std::vector<std::string> expected;
  for (const std::string& prototype : Prototypes()) {
    const std::string name = prototype.substr(0, prototype.find('('));
    const std::string buffer = BufferName(prototype);
    const std::string head = BasicHead(prototype);
    const std::string call =
        Replaced(name + " = QlxLibrary()." + head, {{"ByVal | As (String|Long)", ""}});
    if (buffer.empty()) {
      expected.push_back(head + " " + call);
    } else {
      expected.push_back(Replaced(head, {{"ByVal " + buffer, "ByRef " + buffer}}) +
                         " Dim theAnswer As String " + Replaced(call, {{buffer, "theAnswer"}}) +
                         " PutAnswer theAnswer, " + EndOfRecord(name) + ", " + buffer);
    }
  }
  const std::string module = ProjectFile("macros/qlx99.bas");
  const std::string functions = module.substr(module.rfind("Private Sub PutAnswer"));
  EXPECT_EQ(All(functions, "Public Function (.*?) End Function"), expected);
}

// The editor gives a name one form throughout a project, and a name of one word may be one of the
// word processor's.
TEST(MacroInterface, LeavesTheLettersOfTheOfficesNamesAlone) {
  for (const char* file : {"macros/qlx99.bas", "macros/letter.bas"}) {
    const std::string module = Replaced(ProjectFile(file), {{"(^|\n) *'[^\n]*", "$1"}});
    EXPECT_THAT(All(module, "\\b(?:ByVal|ByRef|ParamArray|Dim|Const) ([a-z]+)\\b"), IsEmpty());
    EXPECT_THAT(All(module, "\\bDim [^\"]*?, ([a-z]+)(?:\\(\\))? As "), IsEmpty());
    EXPECT_THAT(All(module, "Public Type ((?!Qlx)\\w+)"), IsEmpty());
  }
}

// Each function with its arguments, and each error.
TEST(MacroInterface, IsToldOfInTheHandbook) {
  const std::string handbook = ProjectFile("macros/HANDBUCH.md");
  std::string module = ProjectFile("macros/qlx99.bas");
  module.erase(module.rfind("#If Win64"));
  for (const std::string& head : All(module, "\\bPublic ((?:Function|Sub) [^)]*\\))")) {
    EXPECT_THAT(handbook,
                HasSubstr(Replaced(head, {{"Optional ByVal (\\w+) As \\w+( = \\w+)?", "[$1]"},
                                          {"By(?:Val|Ref) (\\w+) As \\w+", "$1"},
                                          {"Function ", "`"},
                                          {"Sub (\\w+)\\((.*)\\)", "`$1 $2`"}})));
  }
  for (const std::string& error : All(module, "(qlx\\w+) = vbObjectError")) {
    EXPECT_THAT(handbook, HasSubstr("| `" + error + "` |"));
  }
}

TEST(MacroInterface, ReadsEachRecordIntoItsFieldsInTheirOrder) {
  const std::string module =
      Replaced(Lower(ProjectFile("macros/qlx99.bas")),
               {{"(public type|dim theentry as) \\w+", "$1"},
                {" as (string|long|variant)\n", "\n"},
                {"numberof\\((.*)\\)\n", "$1\n"},
                {"formedas\\(.*, (.*)\\)\n", "$1\n"},
                {"fieldsof\\(.*?, (\\d+), \".*?(, \\d)?\\)\n", "$1$2\n"},
                {"\\w+ = theentry\n", "= theentry\n"},
                {"(\n' wvnext\n)(?:'.*\n)+", "$1"},
                {"(\n    id\n)    casenumber\n    partyrecordid\n", "$1"},
                {"    theentry\\.\\w+ = (casenumber|partyrecordidat.*)\n", ""}});
  for (const Export& one : Exports()) {
    if (one.fields.empty() || one.fields.front().name == "path") continue;
    std::string type = Lower("' " + std::string(one.name)) + "\npublic type\n";
    const auto freeText = std::ranges::find(one.fields, Form::kFreeText, &Field::form);
    std::string reading = "thefields = " + std::to_string(one.fields.size());
    if (freeText != one.fields.end()) {
      reading += ", " + std::to_string(freeText - one.fields.begin());
    }
    reading += "\n    dim theentry as\n";
    for (std::size_t i = 0; i < one.fields.size(); ++i) {
      const std::string field = Lower(std::string(one.fields[i].name));
      type += "    " + field + "\n";
      reading += "    theentry." + field + " = thefields(" + std::to_string(i) + ")\n";
    }
    EXPECT_THAT(module, HasSubstr(type + "end type\n"));
    EXPECT_THAT(module, HasSubstr(reading + "    = theentry\n"));
  }
}

}  // namespace
}  // namespace office
