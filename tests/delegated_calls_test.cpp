// The delegated kind: the login handshake with the office's other programs, and the calls that the
// sibling library answers.
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
  const struct {
    const char* name;
    std::vector<const char*> running;
    std::deque<Heard> conversation;
    std::size_t complaints;
    bool confirmed;
  } cases[] = {
      {"logged in from the start",
       {kLoginServer, kInquiryProgram},
       {LoggedIn(1), Product(8), LoginEnded(1), Minimized()},
       0,
       true},
      {"nobody logged in",
       {kLoginServer},
       {LoggedIn(0), Started().Meanwhile(Mask(1)), Product(0), Product(0), Product(8),
        LoginEnded(0), LoginEnded(0), LoginEnded(1), Minimized()},
       0,
       true},
      {"no login server yet",
       {},
       {Started().Meanwhile(serverStarts), Product(8), LoginEnded(1), Minimized()},
       0,
       true},
      {"no login server, and the mask closed", {}, {Started().Meanwhile(Mask(2))}, 0, false},
      {"another product, then yet another",
       {kLoginServer, kInquiryProgram},
       {LoggedIn(1), Product(3), ChangeLogin(), ChangeLogin().Meanwhile(Mask(1)), ChangeLogin(),
        Product(5), ChangeLogin().Meanwhile(Mask(1)), ChangeLogin(), Product(0), ChangeLogin(),
        Product(8), LoginEnded(1), Minimized()},
       2,
       true},
      {"another product, then the mask closed",
       {kLoginServer, kInquiryProgram},
       {LoggedIn(1), Product(3), ChangeLogin().Meanwhile(Mask(2)), ChangeLogin()},
       1,
       false},
      {"login taken back and made again before it has ended",
       {kLoginServer, kInquiryProgram},
       {LoggedIn(1), Product(8), LoginEnded(0).Meanwhile(Mask(-1)), LoginEnded(1),
        LoginEnded(1).Meanwhile(Mask(1)), LoginEnded(1), Minimized()},
       0,
       true},
      {"mask closed before the login has ended",
       {kLoginServer, kInquiryProgram},
       {LoggedIn(1), Product(8), LoginEnded(0).Meanwhile(Mask(2)), LoginEnded(1)},
       0,
       false},
  };
  for (const auto& [name, running, conversation, complaints, confirmed] : cases) {
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
  std::vector<const void*> arguments;  // null for the text that the library makes of a number
  std::function<std::int32_t()> call;
};

class DelegateTest : public DelegatedTest {
 protected:
  std::vector<DelegatedCall> Calls() {
    const Exports* l = library.operator->();
    const char *a = "260", *b = "2", *c = "3", *d = "4", *e = "5", *f = "6";
    char* r = record;
    return {
        {"GetAdressTyp", "GetAdressTyp", {a, b}, [=] { return l->GetAdressTyp(a, b); }},
        {"ALesenDLL", "GetAdrFields", {a, b, r, d}, [=] { return l->ALesenDLL(a, b, r, d); }},
        {"GetAdrFieldsMain",
         "GetAdrFieldsMain",
         {a, b, c, d},
         [=] { return l->GetAdrFieldsMain(a, b, c, d); }},
        {"UserInit", "GetCountOfUser", {}, [=] { return l->UserInit(); }},
        {"UserNext", "GetUserFields", {a, r}, [=] { return l->UserNext(a, r); }},
        {"ZtkodoliInit", "GetCountOfWV", {}, [=] { return l->ZtkodoliInit(); }},
        {"ZtkodoliNext", "GetWVFields", {a, r}, [=] { return l->ZtkodoliNext(a, r); }},
        {"BLesenDLL",
         "GetPartFields",
         {a, b, c, d, r},
         [=] { return l->BLesenDLL(a, b, c, d, r); }},
        {"GetDokuNr", "GetNextDoc", {a}, [=] { return l->GetDokuNr(a); }},
        {"SLesenDLL", "GetCaseFields", {a, r}, [=] { return l->SLesenDLL(a, r); }},
        {"BListeInit", "GetCountOfParts", {a}, [=] { return l->BListeInit(a); }},
        {"BListeNext", "GetAdrFieldsWithNumber", {a, b, r}, [=] { return l->BListeNext(a, b, r); }},
        {"WVInit", "GetCountOfWVFromCase", {a}, [=] { return l->WVInit(a); }},
        {"WVNext", "GetWVFieldsFromCase", {a, b, r}, [=] { return l->WVNext(a, b, r); }},
        {"GetProgramRoot",
         "GetProgramRoot",
         {nullptr, r},
         [=] { return l->GetProgramRoot(260, r); }},
        {"GetDocuRoot", "GetDocuRoot", {nullptr, r}, [=] { return l->GetDocuRoot(260, r); }},
        {"WVDelete", nullptr, {}, [=] { return l->WVDelete(a); }},
        {"WVNew", nullptr, {}, [=] { return l->WVNew(a, b, c, d, e, f, r); }},
        {"WVChange", nullptr, {}, [=] { return l->WVChange(a, b, c, d, e, f, r); }},
    };
  }

  CallerBuffer record;
};

TEST_F(DelegateTest, GetsTheArgumentsAsTheyAreAndGivesTheResult) {
  BothProgramsRun();
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
