// The delegated kind: the login handshake with the office's other programs, and the calls that the
// sibling library answers.
#include "office/export_table.h"
#include "support/export_test.h"
#include "support/office_programs.h"
#include "support/world.h"

namespace qlx99::tests {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;

Heard LoggedIn(LRESULT answer) { return {"KRVLOGSRV32: WM_ISLOGGEDIN", answer}; }
Heard Product(LRESULT answer) { return {"KRVLOGSRV32: WM_GETCURRENTPRODUCTID", answer}; }
Heard ChangeLogin() { return {"KRVLOGSRV32: WM_CHANGELOGIN"}; }
Heard LoginEnded(LRESULT answer) { return {"KRVLOGSRV32: WM_ISENDLOGIN", answer}; }
Heard Started() { return {"TELQBASE: started 5 0"}; }
Heard Minimized() { return {"TELQBASE: WM_KRV_SHOWWINDOW 0 6"}; }

std::deque<Heard> Talk(const auto&... heard) { return {heard...}; }

std::function<void()> Mask(int state) {
  return [state] { OfficePrograms::LoginMaskReports(state); };
}

class DelegatedTest : public ExportTest {
 protected:
  DelegatedTest() { managers.Are({}); }  // where it is missed, the user is told

  void TearDown() override {
    fs::current_path(folderBefore_);
    programs.End();
    ExportTest::TearDown();
  }

  void BothProgramsRun() {
    programs.Start(kLoginServer);
    programs.Start(kInquiryProgram);
  }

  // The next call finds the user logged in as it must be.
  void LoginIsThere() { programs.WillHear({LoggedIn(1), Product(8), LoginEnded(1), Minimized()}); }

  OfficePrograms programs{office};

 private:
  fs::path folderBefore_ = fs::current_path();
};

using LoginHandshakeTest = DelegatedTest;

TEST_F(LoginHandshakeTest, FollowsTheLogin) {
  const auto serverStarts = [&] {
    programs.Start(kLoginServer);
    OfficePrograms::LoginMaskReports(1);
  };
  using Programs = std::vector<const char*>;
  const Programs both{kLoginServer, kInquiryProgram};
  const Programs server{kLoginServer};
  const Programs none;
  const struct {
    const char* name;
    std::size_t complaints;
    bool confirmed;
    Programs running;
    std::deque<Heard> conversation;
  } cases[] = {
      {"logged in from the start", 0, true, both,
       Talk(LoggedIn(1), Product(8), LoginEnded(1), Minimized())},
      {"nobody logged in", 0, true, server,
       Talk(LoggedIn(0), Started().Meanwhile(Mask(1)), Product(0), Product(0), Product(8),
            LoginEnded(0), LoginEnded(0), LoginEnded(1), Minimized())},
      {"no login server yet", 0, true, none,
       Talk(Started().Meanwhile(serverStarts), Product(8), LoginEnded(1), Minimized())},
      {"no login server, and the mask closed", 0, false, none, Talk(Started().Meanwhile(Mask(2)))},
      {"another product, then yet another", 2, true, both,
       Talk(LoggedIn(1), Product(3), ChangeLogin(), ChangeLogin().Meanwhile(Mask(1)), ChangeLogin(),
            Product(5), ChangeLogin().Meanwhile(Mask(1)), ChangeLogin(), Product(0), ChangeLogin(),
            Product(8), LoginEnded(1), Minimized())},
      {"another product, then the mask closed", 1, false, both,
       Talk(LoggedIn(1), Product(3), ChangeLogin().Meanwhile(Mask(2)), ChangeLogin())},
      {"login taken back and made again before it has ended", 0, true, both,
       Talk(LoggedIn(1), Product(8), LoginEnded(0).Meanwhile(Mask(-1)), LoginEnded(1),
            LoginEnded(1).Meanwhile(Mask(1)), LoginEnded(1), Minimized())},
      {"mask closed before the login has ended", 0, false, both,
       Talk(LoggedIn(1), Product(8), LoginEnded(0).Meanwhile(Mask(2)), LoginEnded(1))},
  };
  for (const auto& [name, complaints, confirmed, running, conversation] : cases) {
    SCOPED_TRACE(name);
    for (const char* program : running) programs.Start(program);
    programs.WillHear(conversation);
    EXPECT_EQ(library->UserInit(), confirmed ? kDelegateAnswer : 0);
    programs.End();
    EXPECT_EQ(user.Messages(), std::vector<MessageBox>(
                                   complaints, {"Sie sind nicht in einer STELVORA-Bürogemeinschaft "
                                                "angemeldet. Bitte und melden Sie sich um.",
                                                "Systemmeldung !", MB_SYSTEMMODAL}));
  }
}

TEST_F(LoginHandshakeTest, TakesNobodyForLoggedInWithoutTheInquiryProgram) {
  fs::remove(programs.Bin32() / "telq32.exe");
  programs.Start(kLoginServer);
  programs.WillHear({LoggedIn(1).Meanwhile(Mask(1)), Product(0), Product(8), LoginEnded(1)});
  EXPECT_EQ(library->UserInit(), kDelegateAnswer);
}

TEST_F(LoginHandshakeTest, TakesTheLongestMappingRootWithoutATerminator) {
  office.IsConfiguredWithBytes("MappingRoot", std::string(260, 'x'));
  programs.Start(kLoginServer);
  programs.WillHear({LoggedIn(1).Meanwhile(Mask(1)), Product(8), LoginEnded(1)});
  EXPECT_EQ(library->UserInit(), 0);
  EXPECT_THAT(user.Messages(), ElementsAre(Invalid("Funktion >GetCountOfUser< aus der QLX02.DLL "
                                                   "nicht gefunden")));
}

TEST_F(LoginHandshakeTest, ReadsTheMappingRootTwice) {
  const fs::path root = programs.Bin32().parent_path();
  const fs::path newRoot = office.Folder() / "moved";
  programs.Start(kLoginServer);
  programs.WillHear({LoggedIn(1), Product(8).Meanwhile([&] {
                       fs::rename(root, newRoot);
                       office.IsConfigured("MappingRoot", newRoot.string());
                     }),
                     LoginEnded(1)});
  EXPECT_EQ(library->UserInit(), kDelegateAnswer);
  programs.WillHear(
      {LoggedIn(1), Product(8).Meanwhile([&] { office.IsNotConfigured("MappingRoot"); })});
  EXPECT_EQ(library->UserInit(), 0);
  fs::current_path(office.Folder());
  library.Free();
  fs::rename(newRoot, root);
}

TEST_F(LoginHandshakeTest, GivesTheHostItsQuitMessageBack) {
  BothProgramsRun();
  LoginIsThere();
  PostQuitMessage(7);
  EXPECT_EQ(library->UserInit(), kDelegateAnswer);
  MSG message{};
  EXPECT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, WM_QUIT);
  EXPECT_EQ(message.wParam, 7U);
}

TEST_F(LoginHandshakeTest, HasAHiddenWindowThatIsMadeAgainWhenItsOwnerHasGone) {
  WNDCLASSA opus{};
  opus.lpfnWndProc = DefWindowProcA;
  opus.hInstance = GetModuleHandleA(nullptr);
  opus.lpszClassName = "OpusApp";
  RegisterClassA(&opus);
  HWND owner = CreateWindowExA(0, "OpusApp", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                               opus.hInstance, nullptr);
  BothProgramsRun();
  LoginIsThere();
  HINSTANCE module = library->module;
  EXPECT_EQ(library->UserInit(), kDelegateAnswer);

  HWND window = FindWindowA("KrvQLX", "KrvQLX");
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)),
            WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_CLIPSIBLINGS);
  WNDCLASSA its{};
  ASSERT_TRUE(GetClassInfoA(module, "KrvQLX", &its));
  EXPECT_EQ(its.style, CS_HREDRAW);
  EXPECT_EQ(its.lpfnWndProc, library->MainWndProc);
  EXPECT_EQ(its.hbrBackground, GetStockObject(WHITE_BRUSH));
  EXPECT_EQ(its.hIcon, nullptr);
  EXPECT_EQ(its.hCursor, nullptr);
  EXPECT_EQ(its.lpszMenuName, nullptr);
  EXPECT_EQ(its.cbClsExtra + its.cbWndExtra, 0);

  DestroyWindow(owner);
  UnregisterClassA("OpusApp", opus.hInstance);
  EXPECT_EQ(FindWindowA("KrvQLX", nullptr), nullptr);
  LoginIsThere();
  EXPECT_EQ(library->UserInit(), kDelegateAnswer);
  EXPECT_NE(FindWindowA("KrvQLX", nullptr), nullptr);
  library.Free();
  EXPECT_EQ(FindWindowA("KrvQLX", nullptr), nullptr);
  EXPECT_FALSE(GetClassInfoA(module, "KrvQLX", &its));
  EXPECT_EQ(GetModuleHandleA("qlx02.dll"), nullptr);
}

TEST_F(LoginHandshakeTest, ItsWindowKeepsOnlyThreeMessagesToItself) {
  BothProgramsRun();
  LoginIsThere();
  library->UserInit();
  HWND window = FindWindowA("KrvQLX", nullptr);
  const UINT mask = RegisterWindowMessageA("WM_KRV_LOGINMASK");
  for (const UINT message : std::initializer_list<UINT>{mask, WM_CREATE, WM_DESTROY}) {
    EXPECT_EQ(library->MainWndProc(window, message, 1, 0), 0);
  }
  library->MainWndProc(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("Titel"));
  EXPECT_EQ(FindWindowA("KrvQLX", "Titel"), window);
}

// Every export with its delegate; the first argument is the same text each time.
struct DelegatedCall {
  const char* exportName;
  const char* delegate;
  std::vector<const void*> arguments;  // null for a number, of which the library makes a text
  std::function<std::int32_t()> call;
};

class DelegateTest : public DelegatedTest {
 protected:
  static const void* AsPassedOn(const char* text) { return text; }
  static const void* AsPassedOn(std::int32_t /*number*/) { return nullptr; }

  template <class Function, class... Arguments>
  DelegatedCall Row(const char* exportName, const char* delegate, Function Exports::*function,
                    Arguments... arguments) {
    const Exports* const exports = library.operator->();
    return {exportName, delegate, {AsPassedOn(arguments)...}, [=] {
              return (exports->*function)(arguments...);
            }};
  }

  std::vector<DelegatedCall> Calls() {
    using E = Exports;
    const char *a = "260", *b = "2", *c = "3", *d = "4", *e = "5", *f = "6";
    char* r = record;
    return {Row("GetAdressTyp", "GetAdressTyp", &E::GetAdressTyp, a, b),
            Row("ALesenDLL", "GetAdrFields", &E::ALesenDLL, a, b, r, d),
            Row("GetAdrFieldsMain", "GetAdrFieldsMain", &E::GetAdrFieldsMain, a, b, c, d),
            Row("UserInit", "GetCountOfUser", &E::UserInit),
            Row("UserNext", "GetUserFields", &E::UserNext, a, r),
            Row("ZtkodoliInit", "GetCountOfWV", &E::ZtkodoliInit),
            Row("ZtkodoliNext", "GetWVFields", &E::ZtkodoliNext, a, r),
            Row("BLesenDLL", "GetPartFields", &E::BLesenDLL, a, b, c, d, r),
            Row("GetDokuNr", "GetNextDoc", &E::GetDokuNr, a),
            Row("SLesenDLL", "GetCaseFields", &E::SLesenDLL, a, r),
            Row("BListeInit", "GetCountOfParts", &E::BListeInit, a),
            Row("BListeNext", "GetAdrFieldsWithNumber", &E::BListeNext, a, b, r),
            Row("WVInit", "GetCountOfWVFromCase", &E::WVInit, a),
            Row("WVNext", "GetWVFieldsFromCase", &E::WVNext, a, b, r),
            Row("GetProgramRoot", "GetProgramRoot", &E::GetProgramRoot, 260, r),
            Row("GetDocuRoot", "GetDocuRoot", &E::GetDocuRoot, 260, r),
            Row("WVDelete", nullptr, &E::WVDelete, a),
            Row("WVNew", nullptr, &E::WVNew, a, b, c, d, e, f, r),
            Row("WVChange", nullptr, &E::WVChange, a, b, c, d, e, f, r)};
  }

  CallerBuffer record;
};

TEST_F(DelegateTest, GetsTheArgumentsAsTheyAreAndGivesTheResult) {
  BothProgramsRun();
  EXPECT_EQ(Calls().size(), office::Exports().size());
  for (const auto& [exportName, delegate, arguments, call] : Calls()) {
    SCOPED_TRACE(exportName);
    LoginIsThere();
    EXPECT_EQ(call(), delegate == nullptr ? 0 : kDelegateAnswer);
    if (delegate == nullptr) {
      EXPECT_THAT(user.Messages(), ElementsAre(Invalid("Funktion >" + std::string(exportName) +
                                                       "< noch nicht implementiert")));
      continue;
    }
    const DelegateCall got = OfficePrograms::LastDelegateCall();
    EXPECT_STREQ(got.name, delegate);
    ASSERT_EQ(got.argumentCount, arguments.size());
    EXPECT_STREQ(got.firstText, arguments.empty() ? "" : "260");
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      if (arguments[i] != nullptr) {
        EXPECT_EQ(got.arguments[i], arguments[i]) << i;
      }
    }
  }
  EXPECT_EQ(Outcome(0, record), "0 ");
}

TEST_F(DelegateTest, ThatIsMissingIsNamed) {
  const fs::path library02 = programs.Bin32() / world::LibraryFile("qlx02");
  BothProgramsRun();
  for (const char* other : {"", "scripted_manager"}) {
    fs::remove(library02);
    if (*other != '\0') fs::copy(world::ProgramFolder() / world::LibraryFile(other), library02);
    for (const auto& [exportName, delegate, arguments, call] : Calls()) {
      if (delegate == nullptr) continue;
      LoginIsThere();
      EXPECT_EQ(call(), 0);
      EXPECT_THAT(user.Messages(), ElementsAre(Invalid("Funktion >" + std::string(delegate) +
                                                       "< aus der QLX02.DLL nicht gefunden")));
    }
  }
  EXPECT_EQ(Outcome(0, record), "0 ");
}

TEST_F(DelegateTest, IsNotCalledWithoutAMappingRoot) {
  office.IsNotConfigured("MappingRoot");
  programs.Start(kInquiryProgram);
  for (const auto& [exportName, delegate, arguments, call] : Calls()) {
    programs.WillHear({Minimized()});
    EXPECT_EQ(call(), 0) << exportName;
  }
  EXPECT_EQ(Outcome(0, record), "0 ");
}

TEST_F(DelegateTest, StaysLoadedBetweenCallsWithItsFolderCurrent) {
  BothProgramsRun();
  LoginIsThere();
  EXPECT_EQ(library->UserInit(), kDelegateAnswer);
  EXPECT_TRUE(fs::equivalent(fs::current_path(), programs.Bin32()));
  const fs::path other = office.Folder() / "other";
  fs::create_directories(other / "bin32");
  fs::copy(programs.Bin32() / "telq32.exe", other / "bin32" / "telq32.exe");
  office.IsConfigured("MappingRoot", other.string());
  LoginIsThere();
  EXPECT_EQ(library->GetDokuNr("1"), kDelegateAnswer);
  EXPECT_TRUE(fs::equivalent(fs::current_path(), programs.Bin32()));
}

}  // namespace
}  // namespace qlx99::tests
