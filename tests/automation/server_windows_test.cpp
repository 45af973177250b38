// The automation server as scripts meet it.
#include <set>
#include <sstream>

#include "automation/server_test.h"
#include "frame/attach.h"
#include "office/export_call.h"
// <windows.h> first: these build on it.
#include <oleauto.h>

namespace qlx99::tests {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

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
  const std::string answers = Run(script);

  TearDownTestSuite();
  SetUpTestSuite();
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
  std::istringstream answers(Run(script, "js"));
  for (const auto& [call, expected] : calls) {
    std::string answer;
    std::getline(answers, answer);
    EXPECT_THAT(answer, StartsWith(expected)) << call;
  }
}

TEST_F(AutomationServer, TakesACaseNumberFromNumbersOfEveryKind) {
  std::istringstream answers(Run(
      "For Each number In Array(\"12345678\", 12345678, 12345678.0, CCur(12345678), "
      "CSng(12345678))\nrecord = \"\"\nWScript.Echo library.SLesenDLL(number, record) & record\n"
      "Next\n"));
  std::string expected;
  std::getline(answers, expected);
  EXPECT_THAT(expected, StartsWith("-1Brandst"));
  int alike = 0;
  for (std::string answer; std::getline(answers, answer);) alike += answer == expected ? 1 : 0;
  EXPECT_EQ(alike, 4);
}

// As languages pass a variable that they were passed themselves.
TEST_F(AutomationServer, FollowsReferencesToReferences) {
  CoInitialize(nullptr);
  CLSID id{};
  ASSERT_EQ(CLSIDFromProgID(L"qlx99.Library", &id), S_OK);
  IDispatch* library = nullptr;
  ASSERT_EQ(CoCreateInstance(id, nullptr, CLSCTX_LOCAL_SERVER, IID_IDispatch,
                             reinterpret_cast<void**>(&library)),
            S_OK);
  std::wstring name = L"GetDokuNr";
  LPOLESTR names = name.data();
  DISPID method = 0;
  EXPECT_EQ(library->GetIDsOfNames(IID_NULL, &names, 1, 0, &method), S_OK);
  const auto referenceTo = [](VARIANT& variable) {
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &variable;
    return reference;
  };
  VARIANT number{};
  number.vt = VT_BSTR;
  number.bstrVal = SysAllocString(L"12345678");
  VARIANT inner = referenceTo(number);
  VARIANT outer = referenceTo(inner);
  DISPPARAMS arguments{&outer, nullptr, 1, 0};
  VARIANT result{};
  EXPECT_EQ(
      library->Invoke(method, IID_NULL, 0, DISPATCH_METHOD, &arguments, &result, nullptr, nullptr),
      S_OK);
  EXPECT_GT(result.lVal, 0);
  VariantClear(&number);
  library->Release();
  CoUninitialize();
}

TEST_F(AutomationServer, MissesArgumentsThatAreLeftOut) {
  EXPECT_EQ(Run("On Error Resume Next\n"
                "library.ALesenDLL \"\", , record, \"\"\nWScript.Echo Err.Number\nErr.Clear\n"
                "library.ALesenDLL \"\", 4711, , \"\"\nWScript.Echo Err.Number\n"),
            "449\n449\n");
}

TEST_F(AutomationServer, SaysWhyThereIsNoLibraryAndIsFoundByTheCheck) {
  const std::string program = (ProductFolder() / "qlx99server.exe").string();
  EXPECT_THAT(Qlx("office|check").out, HasSubstr("  automation      " + program + " answers\n"));
  TemporaryFolder alone;
  const fs::path copy = alone.Path() / "qlx99server.exe";
  fs::copy_file(program, copy);
  RunServer("/regserver", alone.Path());
  EXPECT_THAT(Run("attempt(\"UserInit()\")", "js"),
              StartsWith("8007007e " + alone.Text() + "\\qlx99.dll cannot be loaded. "));
  const std::string library = alone.Text() + "\\qlx99.dll";
  const std::string bad = "! automation      " + copy.string() + " answers, but ";
  EXPECT_THAT(Qlx("office|check").out,
              HasSubstr(bad + library + " cannot be loaded: it, or a library "));
  testkit::WriteAll(library, "damaged");
  EXPECT_THAT(Run("attempt(\"UserInit()\")", "js"),
              AllOf(StartsWith("800700c1 " + library + " cannot be loaded. "), Not(HasSubstr("%1")),
                    Not(HasSubstr(" \n"))));
  EXPECT_THAT(Qlx("office|check|--library|" + library).out,
              AllOf(HasSubstr("! library         "),
                    HasSubstr(bad + library + " cannot be loaded: it is no ")));
  fs::copy_file(ProductFolder() / "atbtrv32.dll", library, fs::copy_options::overwrite_existing);
  EXPECT_THAT(Qlx("office|check").out,
              AllOf(HasSubstr(bad + "qlx99.dll "), HasSubstr(alone.Text() + ", has no function ")));
  EXPECT_TRUE(Eventually([] { return CountServers() == 0; }));
  fs::remove(copy);
  EXPECT_THAT(Qlx("office|check").out, HasSubstr(copy.string() + " does not answer (error 0x8"));
  RunServer("/unregserver");
  EXPECT_THAT(Qlx("office|check").out, HasSubstr("  automation      not registered, "));
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
