// The automation server as its clients meet it: scripts of the system's script host, and a program
// with a window. All of them are 32-bit ones here, as the Windows of these tests is.
#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <sstream>

#include "automation/late_bound_client.h"
#include "automation/machine_office.h"
#include "automation/seen_from_outside.h"
#include "frame/attach.h"
#include "office/export_call.h"
#include "office/sample_office.h"
#include "office/text_encoding.h"
#include "platform/windows_api.h"
#include "resources/resource.h"
#include "support/started_program.h"
#include "testkit/embedded_manager.h"
#include "testkit/files.h"
#include "testkit/temporary_folder.h"

namespace qlx99::tests {
namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::StartsWith;
using testkit::ProductFolder;
using testkit::TemporaryFolder;

const std::string kClassKeys[] = {"qlx99.Library", "qlx99.Library.1",
                                  "CLSID\\{A3F2BE8F-F156-4BB0-B3BA-7CA73F004344}"};

const std::string kClasses = "Software\\Classes\\";

// The text of a key; "none" when there is no such key.
std::string TextOf(HKEY users, const std::string& key) {
  std::array<char, MAX_PATH> text{};
  LONG size = text.size();
  const LSTATUS status = RegQueryValueA(users, (kClasses + key).c_str(), text.data(), &size);
  return status == ERROR_FILE_NOT_FOUND ? "none" : text.data();
}

constexpr auto kCreate = "Set library = CreateObject(\"qlx99.Library\")\n";

// For calls that fail: in JScript, which tells automation's own numbers.
constexpr auto kAttempt = R"(
var library = new ActiveXObject("qlx99.Library");
function attempt(call) {
  try {
    WScript.Echo(eval("library." + call));
  } catch (error) {
    WScript.Echo((error.number >>> 0).toString(16) + " " + error.description);
  }
}
)";

class AutomationServer : public testing::Test {
 protected:
  static void SetUpTestSuite() { office.emplace(); }
  static void TearDownTestSuite() { office.reset(); }

  void SetUp() override { RunServer("/regserver"); }

  void TearDown() override {
    EXPECT_TRUE(Eventually([] { return CountServers() == 0; }));
    RunServer("/unregserver");
    for (HKEY users : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
      for (const std::string& name : kClassKeys) EXPECT_EQ(TextOf(users, name), "none");
    }
  }

  std::string RunServer(const std::string& option, const fs::path& folder = ProductFolder()) {
    return StartedProgram('"' + (folder / "qlx99server.exe").string() + "\" " + option, Output())
        .WholeText();
  }

  // A script as a macro author writes it, in Windows' code page.
  std::unique_ptr<StartedProgram> Start(const std::string& script,
                                        const std::string& type = "vbs") {
    const fs::path file = Output().string() + '.' + type;
    testkit::WriteAll(file, (type == "vbs" ? kCreate : kAttempt) + office::Encode(script));
    return std::make_unique<StartedProgram>("cscript //nologo \"" + file.string() + '"', Output());
  }

  fs::path Output() { return temporary_.Path() / std::to_string(++outputs_); }

  static inline std::optional<MachineOffice> office;

 private:
  TemporaryFolder temporary_;
  int outputs_ = 0;
};

struct Call {
  const char* name;
  std::string arguments;  // as in a script; the record's variable is among them
};

const Call kCalls[] = {
    {"GetDocuRoot", "4, record"},
    {"GetProgramRoot", "\"2\", record"},
    {"UserInit", ""},
    {"UserNext", "2, record"},
    {"ZtkodoliInit", ""},
    {"ZtkodoliNext", "\"1\", record"},
    {"WVInit", "12345678"},
    {"WVNext", "\"12345678\", 1, record"},
    {"WVNew", "\"12345678\", 1, \"15.05.2026\", 1, 0, \"0\", \"Grüße nach Köln: § 5\""},
    {"WVNext", "12345678, 6, record"},
    {"WVChange", "13, 1, \"22.05.2026\", \"1\", 0, 0, \"§ 1: ÄÖÜß\""},
    {"WVNext", "12345678, 6, record"},
    {"WVDelete", "13"},
    {"WVNext", "12345678, 6, record"},
    {"SLesenDLL", "\"12345678\", record"},
    {"ALesenDLL", "\"12345678\", 4711, record, \"815\""},
    {"BLesenDLL", "\"M \", \"12345678\", \"\", \"\", record"},
    {"BLesenDLL", "\"§M\", \"12345678\", \"\", \"1\", record"},
    {"BListeInit", "\"12345678\""},
    {"BListeNext", "\"12345678\", 1, record"},
    {"GetAdrFieldsMain", "1, 2, 3, 4"},
    {"GetAdressTyp", "\"\", \"\""},
    {"GetDokuNr", "12345678"},
};

// The line that the script writes for the call, from the library itself.
std::string Expected(const Call& call) {
  std::vector<std::string> arguments;
  std::istringstream list(call.arguments);
  for (std::string one; std::getline(list >> std::ws, one, ',');) {
    std::erase(one, '"');
    if (one != "record") arguments.push_back(one);
  }
  const office::Export& called = office::ExportNamed(call.name);
  const office::CallOutcome outcome = office::CallExport(called, arguments);
  const std::string record = called.fields.empty() ? "-" : outcome.ansiRecord.value_or("");
  return std::to_string(outcome.result) + ' ' + office::Decode(record) + '\n';
}

TEST_F(AutomationServer, AnswersAsTheLibraryDoes) {
  std::set<std::string> names;
  std::string script;
  for (const Call& call : kCalls) {
    names.insert(call.name);
    script += "record = \"-\"\nresult = library." + std::string(call.name) + '(' + call.arguments +
              ")\nWScript.Echo result & \" \" & record\n";
  }
  EXPECT_EQ(names.size(), office::Exports().size());
  const std::string answers = Start(script)->WholeText();

  office.reset();
  office.emplace();
  qlx99::AttachLibrary(GetModuleHandleA(nullptr));
  std::string expected;
  for (const Call& call : kCalls) expected += Expected(call);
  EXPECT_EQ(answers, expected);
}

// In words that script hosts do not translate.
TEST_F(AutomationServer, RefusesWhatIsNoCallOfTheLibrary) {
  const struct {
    const char* call;
    const char* answer;
  } calls[] = {
      {"WVInit('12345678')", "5"},
      {"wvINIT(12345678)", "5"},
      {"WVInit(library)", "80020005"},  // type mismatch
      {"WVInit(null)", "80020005"},
      {"SLesenDLL('12345678', 'no variable')", "80020005"},
      {"GetDocuRoot('four', 'no variable')", "80020005"},
      {"GetDocuRoot(1e10, 'no variable')", "8002000a"},  // overflow
      {"WVInit(1e15)", "8002000a"},                      // written 1E+15, and read as 1
      {"WVInit(1 / 0)", "8002000a"},
      {"WVInit()", "8002000e"},  // number of arguments
      {"WVInit('12345678', 1)", "8002000e"},
      {"WVInit('123' + String.fromCharCode(0))",
       "80070057 caseNumber: A text cannot hold the character 0."},
      {"MainWndProc(0, 0, 0, 0)", "800a01b6"},  // no such method
      {"WVNew('1', 1, '01.01.2026', 1, 0, 0, 'Fall \\u0416')",
       "80070057 text: The character \"?\" in \"Fall ?\" has no place in the office's code page"},
  };
  std::string script;
  for (const auto& [call, answer] : calls) script += "attempt(\"" + std::string(call) + "\");\n";
  std::istringstream answers(Start(script, "js")->WholeText());
  for (const auto& [call, expected] : calls) {
    std::string answer;
    std::getline(answers, answer);
    EXPECT_THAT(answer, StartsWith(expected)) << call;
  }
}

TEST_F(AutomationServer, KnowsNoMethodWithoutAName) {
  DISPID method = 0;
  EXPECT_EQ(LateBoundClient().Find(nullptr, method), DISP_E_UNKNOWNNAME);
}

TEST_F(AutomationServer, SaysWhyThereIsNoLibrary) {
  TemporaryFolder alone;
  fs::copy_file(ProductFolder() / "qlx99server.exe", alone.Path() / "qlx99server.exe");
  RunServer("/regserver", alone.Path());
  EXPECT_THAT(
      Start("attempt(\"UserInit()\")", "js")->WholeText(),
      StartsWith("8007007e " + (alone.Path() / "qlx99.dll").string() + " cannot be loaded. "));
}

TEST_F(AutomationServer, IsFoundByTheCheck) {
  const std::string program = (ProductFolder() / "qlx99server.exe").string();
  EXPECT_THAT(Qlx("office|check").out, HasSubstr("  automation      " + program + " answers\n"));
  TemporaryFolder alone;
  const fs::path copy = alone.Path() / "qlx99server.exe";
  fs::copy_file(program, copy);
  RunServer("/regserver", alone.Path());
  EXPECT_THAT(Qlx("office|check").out,
              HasSubstr("! automation      " + copy.string() + " answers, but has no qlx99.dll"));
  EXPECT_TRUE(Eventually([] { return CountServers() == 0; }));
  fs::remove(copy);
  EXPECT_THAT(Qlx("office|check").out, HasSubstr(copy.string() + " does not answer (error 0x8"));
  RunServer("/unregserver");
  EXPECT_THAT(Qlx("office|check").out, HasSubstr("  automation      not registered, "));
}

TEST_F(AutomationServer, IsAProcessOfItsOwnForEachObject) {
  LateBoundClient one;
  const LateBoundClient other;
  EXPECT_EQ(CountServers(), 2);
  EXPECT_NE(one.Call(L"ALesenDLL", {L"12345678", L"4711", LateBoundClient::kRecord, nullptr}), "");
}

// While the dialog of one client is open, another one works.
TEST_F(AutomationServer, EndsWithItsClient) {
  const auto idle = Start("WScript.Echo library.UserInit\nDo\nLoop");
  EXPECT_TRUE(Eventually([&] { return idle->Written() == "5\n"; }));
  const auto choosing = Start("library.BLesenDLL \"G \", \"23001124\", \"\", \"\", record");
  EXPECT_TRUE(Eventually([] { return PartyDialog() != nullptr; }));
  EXPECT_EQ(Start("WScript.Echo library.UserInit")->WholeText(), "5\n");
  EXPECT_TRUE(Eventually([] { return CountServers() == 2; }));
  idle->Kill();
  EXPECT_TRUE(Eventually([] { return CountServers() == 1; }));
  EXPECT_NE(PartyDialog(), nullptr);
  choosing->Kill();
  EXPECT_TRUE(Eventually([] { return CountServers() == 0; }));
}

TEST_F(AutomationServer, TakesThePlaceOfAnotherVersion) {
  for (HKEY users : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    RegSetValueA(users, (kClasses + kClassKeys[2] + "\\InprocServer32").c_str(), REG_SZ, "old", 0);
  }
  // As shells leave it when they redirect what is said, or quote it.
  EXPECT_EQ(RunServer("\"/RegServer\" "), "qlx99.Library is registered for all users.\n");
  EXPECT_EQ(TextOf(HKEY_LOCAL_MACHINE, kClassKeys[2] + "\\InprocServer32"), "none");
  EXPECT_EQ(TextOf(HKEY_CURRENT_USER, kClassKeys[2]), "none");
}

}  // namespace
}  // namespace qlx99::tests
