// The delegated kind: the login handshake with the office's other programs, and the calls that the
// sibling library answers.
#include <map>
#include <string_view>
#include <thread>
#include <tuple>
#include <type_traits>

#include "support/office_programs.h"
#include "testkit/process.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;

using Programs = std::vector<const char*>;
const Programs kBoth{kLoginServer, kInquiryProgram};
const Programs kServer{kLoginServer};
const Programs kNobody;

// The word processor's main window, which owns the library's hidden one.
constexpr const char* kHost = "OpusApp";
void HostCloses() { DestroyWindow(FindWindowA(kHost, nullptr)); }

struct Login {
  const char* name;
  std::size_t complaints;
  bool confirmed;
  Programs running;  // at first
  std::deque<Heard> conversation;
};

class LoginHandshakeTest : public DelegatedTest {
 protected:
  void Follow(const Login& login) {
    SCOPED_TRACE(login.name);
    programs.Start(kHost);
    for (const char* program : login.running) programs.Start(program);
    programs.WillHear(login.conversation);
    EXPECT_EQ(library->UserInit(), login.confirmed ? kDelegateAnswer : 0);
    programs.End();
    EXPECT_EQ(user.Messages(), std::vector<MessageBox>(
                                   login.complaints,
                                   {"Sie sind nicht in einer STELVORA-Bürogemeinschaft angemeldet. "
                                    "Bitte und melden Sie sich um.",
                                    "Systemmeldung !", MB_SYSTEMMODAL}));
  }

  const std::function<void()> serverStarts_ = [this] {
    programs.Start(kLoginServer);
    OfficePrograms::LoginMaskReports(1);
  };

  const Login logins_[11] = {
      {"logged in from the start", 0, true, kBoth,
       Talk(LoggedIn(1), Product(8), LoginEnded(1), Minimized())},
      {"nobody logged in", 0, true, kServer,
       Talk(LoggedIn(0), Started().Meanwhile(Mask(1)), Product(0), Product(0), Product(8),
            LoginEnded(0), LoginEnded(0), LoginEnded(1), Minimized())},
      {"no login server, and the mask closed", 0, false, kNobody,
       Talk(Started().Meanwhile(Mask(2)))},
      {"no login server yet", 0, true, kNobody,
       Talk(Started().Meanwhile(serverStarts_), Product(8), LoginEnded(1), Minimized())},
      {"another product, then yet another", 2, true, kBoth,
       Talk(LoggedIn(1), Product(3), ChangeLogin(), ChangeLogin().Meanwhile(Mask(1)), ChangeLogin(),
            Product(5), ChangeLogin().Meanwhile(Mask(1)), ChangeLogin(), Product(0), ChangeLogin(),
            Product(8), LoginEnded(1), Minimized())},
      {"another product, then the mask closed", 1, false, kBoth,
       Talk(LoggedIn(1), Product(3), ChangeLogin().Meanwhile(Mask(2)), ChangeLogin())},
      {"login taken back and made again before it has ended", 0, true, kBoth,
       Talk(LoggedIn(1), Product(8), LoginEnded(0).Meanwhile(Mask(-1)), LoginEnded(1),
            LoginEnded(1).Meanwhile(Mask(1)), LoginEnded(1), Minimized())},
      {"mask closed behind the answers", 0, false, kBoth,
       Talk(LoggedIn(1), Product(8).Meanwhile(Mask(2)), LoginEnded(1))},
      {"mask closed before the login has ended", 0, false, kBoth,
       Talk(LoggedIn(1), Product(8), LoginEnded(0).Meanwhile(Mask(2)), LoginEnded(1))},
      {"host closed before the login", 0, false, kServer,
       Talk(LoggedIn(0), Started().Meanwhile(HostCloses))},
      {"host closed before the login has ended", 0, false, kServer,
       Talk(LoggedIn(1), Product(8), LoginEnded(0).Meanwhile(HostCloses))},
  };
};

TEST_F(LoginHandshakeTest, FollowsTheLogin) {
  for (const Login& login : logins_) Follow(login);
  fs::remove(programs.Bin32() / "telq32.exe");
  Follow({"no inquiry program: nobody counts as logged in", 0, true, kServer,
          Talk(LoggedIn(1).Meanwhile(Mask(1)), Product(0), Product(8), LoginEnded(1))});
}

TEST_F(LoginHandshakeTest, TakesTheLongestMappingRootWithoutATerminator) {
  office.IsConfiguredWithBytes("MappingRoot", std::string(260, 'x'));
  programs.Start(kLoginServer);
  programs.WillHear({LoggedIn(1).Meanwhile(Mask(1)), Product(8), LoginEnded(1)});
  EXPECT_EQ(library->UserInit(), 0);
  EXPECT_THAT(user.Messages(), ElementsAre(Invalid("Funktion >GetCountOfUser< aus der QLX02.DLL "
                                                   "nicht gefunden")));
}

// Neither the library's messages nor the delegate's are ended by it.
TEST_F(LoginHandshakeTest, HoldsTheHostsQuitMessageUntilTheCallIsDone) {
  BothProgramsRun();
  const auto confirmed = Talk(LoggedIn(1), Product(8), LoginEnded(1), Minimized());
  const auto refused =
      Talk(LoggedIn(1), Product(3), ChangeLogin().Meanwhile(Mask(2)), ChangeLogin());
  const struct {
    std::deque<Heard> conversation;
    std::function<int()> call;
    std::size_t messages;
  } rows[] = {{confirmed, [this] { return library->UserInit(); }, 0},
              {refused, [this] { return library->UserInit(); }, 1},
              {confirmed, [this] { return library->WVDelete("1"); }, 1},
              {confirmed, [this] { return library->GetDokuNr(kWithMessage); }, 1}};
  for (const auto& [conversation, call, messages] : rows) {
    programs.WillHear(conversation);
    PostQuitMessage(7);
    call();
    EXPECT_EQ(DispatchAsTheHost(), 7);
    EXPECT_THAT(user.Messages(), testing::SizeIs(messages));
  }
}

class LoginWindowTest : public DelegatedTest {
 protected:
  // The hidden window of a library that has seen the login.
  HWND WindowAfterLogin() {
    BothProgramsRun();
    LoginIsThere();
    EXPECT_EQ(library->UserInit(), kDelegateAnswer);
    return FindWindowA("KrvQLX", "KrvQLX");
  }
};

TEST_F(LoginWindowTest, IsMadeAgainWhenItsOwnerHasGone) {
  programs.Start(kHost);
  ASSERT_NE(WindowAfterLogin(), nullptr);
  HINSTANCE module = library->module;
  WNDCLASSA its{};
  ASSERT_TRUE(GetClassInfoA(module, "KrvQLX", &its));
  EXPECT_EQ(its.lpfnWndProc, library->MainWndProc);

  HostCloses();
  EXPECT_EQ(FindWindowA("KrvQLX", nullptr), nullptr);
  LoginIsThere();
  EXPECT_EQ(library->UserInit(), kDelegateAnswer);
  EXPECT_NE(FindWindowA("KrvQLX", nullptr), nullptr);
  library.Free();
  EXPECT_EQ(FindWindowA("KrvQLX", nullptr), nullptr);
  EXPECT_FALSE(GetClassInfoA(module, "KrvQLX", &its));
  EXPECT_EQ(GetModuleHandleA("qlx02.dll"), nullptr);
}

TEST_F(LoginWindowTest, KeepsNoProcedureThatIsGoneWhenAnotherThreadFreesTheLibrary) {
  HWND window = WindowAfterLogin();
  std::thread([&] { library.Free(); }).join();
  EXPECT_EQ(SendMessageA(window, WM_COMMAND, 0, 0), 0);
  programs.End();  // which dispatches this thread's messages
  EXPECT_FALSE(IsWindow(window));
}

// What the sibling library answers.
const std::map<std::string_view, const char*> kDelegates{
    {"GetAdressTyp", "GetAdressTyp"},     {"ALesenDLL", "GetAdrFields"},
    {"UserInit", "GetCountOfUser"},       {"GetAdrFieldsMain", "GetAdrFieldsMain"},
    {"UserNext", "GetUserFields"},        {"ZtkodoliInit", "GetCountOfWV"},
    {"ZtkodoliNext", "GetWVFields"},      {"BLesenDLL", "GetPartFields"},
    {"GetDokuNr", "GetNextDoc"},          {"SLesenDLL", "GetCaseFields"},
    {"BListeInit", "GetCountOfParts"},    {"BListeNext", "GetAdrFieldsWithNumber"},
    {"WVInit", "GetCountOfWVFromCase"},   {"WVNext", "GetWVFieldsFromCase"},
    {"GetProgramRoot", "GetProgramRoot"}, {"GetDocuRoot", "GetDocuRoot"},
};

class DelegateTest : public DelegatedTest {
 protected:
  // An argument of that type: a number, the caller's buffer, or a text of its own.
  template <class Type>
  Type Next(std::vector<const void*>& arguments) {
    static constexpr const char* kTexts[] = {"260", "2", "3", "4", "5", "6", "7"};
    if constexpr (std::is_same_v<Type, std::int32_t>) {
      arguments.push_back(nullptr);
      return 260;
    } else if constexpr (std::is_same_v<Type, char*>) {
      arguments.push_back(static_cast<char*>(record));
      return record;
    } else {
      arguments.push_back(kTexts[arguments.size()]);
      return kTexts[arguments.size() - 1];
    }
  }

  template <class... Types>
  void Check(const char* name, std::int32_t(WINAPI* function)(Types...)) {
    SCOPED_TRACE(name);
    LoginIsThere();
    std::vector<const void*> given;  // null for a number, of which the library makes a text
    const std::tuple<Types...> arguments{Next<Types>(given)...};
    const std::int32_t result = std::apply(function, arguments);
    const auto delegate = kDelegates.find(name);
    if (delegate == kDelegates.end()) {
      EXPECT_EQ(result, 0);
      EXPECT_THAT(user.Messages(), ElementsAre(Invalid("Funktion >" + std::string(name) +
                                                       "< noch nicht implementiert")));
      return;
    }
    EXPECT_EQ(result, kDelegateAnswer);
    const DelegateCall got = OfficePrograms::LastDelegateCall();
    EXPECT_STREQ(got.name, delegate->second);
    ASSERT_EQ(got.argumentCount, given.size());
    EXPECT_STREQ(got.firstText, given.empty() ? "" : "260");
    for (std::size_t i = 0; i < given.size(); ++i) {
      EXPECT_TRUE(given[i] == nullptr || got.arguments[i] == given[i]) << i;
    }
  }

  CallerBuffer record;
};

TEST_F(DelegateTest, GetsTheArgumentsAsTheyAreAndGivesTheResult) {
  BothProgramsRun();
#define CHECK(name, delegate, arguments, fields, result) Check(#name, library->name);
  QLX99_EXPORTS(CHECK)
#undef CHECK
  EXPECT_EQ(OutcomeText(0, record), "0 ");
}

TEST_F(DelegateTest, ThatIsMissingIsNamed) {
  fs::copy(ProgramFolder() / LibraryFile("scripted_manager"),
           programs.Bin32() / LibraryFile("qlx02"), fs::copy_options::overwrite_existing);
  BothProgramsRun();
  LoginIsThere();
  EXPECT_EQ(library->UserNext("1", record), 0);
  EXPECT_THAT(user.Messages(), ElementsAre(Invalid("Funktion >GetUserFields< aus der QLX02.DLL "
                                                   "nicht gefunden")));
  EXPECT_EQ(OutcomeText(0, record), "0 ");
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
  office.IsNotConfigured("MappingRoot");
  programs.WillHear({Minimized()});
  EXPECT_EQ(library->UserInit(), 0);
}

}  // namespace
}  // namespace qlx99::tests
