// The delegated kind: the login handshake with the office's other programs, and the calls that the
// sibling library answers.
#include <map>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "support/office_programs.h"
#include "support/world.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;

using LoginHandshakeTest = DelegatedTest;

using Programs = std::vector<const char*>;
const Programs kBoth{kLoginServer, kInquiryProgram};

struct Login {
  const char* name;
  std::size_t complaints;
  bool confirmed;
  Programs running;
  std::deque<Heard> conversation;
};

const Login kLogins[] = {
    {"logged in from the start", 0, true, kBoth,
     Talk(LoggedIn(1), Product(8), LoginEnded(1), Minimized())},
    {"nobody logged in",
     0,
     true,
     {kLoginServer},
     Talk(LoggedIn(0), Started().Meanwhile(Mask(1)), Product(0), Product(0), Product(8),
          LoginEnded(0), LoginEnded(0), LoginEnded(1), Minimized())},
    {"no login server, and the mask closed", 0, false, {}, Talk(Started().Meanwhile(Mask(2)))},
    {"another product, then yet another", 2, true, kBoth,
     Talk(LoggedIn(1), Product(3), ChangeLogin(), ChangeLogin().Meanwhile(Mask(1)), ChangeLogin(),
          Product(5), ChangeLogin().Meanwhile(Mask(1)), ChangeLogin(), Product(0), ChangeLogin(),
          Product(8), LoginEnded(1), Minimized())},
    {"another product, then the mask closed", 1, false, kBoth,
     Talk(LoggedIn(1), Product(3), ChangeLogin().Meanwhile(Mask(2)), ChangeLogin())},
    {"login taken back and made again before it has ended", 0, true, kBoth,
     Talk(LoggedIn(1), Product(8), LoginEnded(0).Meanwhile(Mask(-1)), LoginEnded(1),
          LoginEnded(1).Meanwhile(Mask(1)), LoginEnded(1), Minimized())},
    {"mask closed before the login has ended", 0, false, kBoth,
     Talk(LoggedIn(1), Product(8), LoginEnded(0).Meanwhile(Mask(2)), LoginEnded(1))},
};

TEST_F(LoginHandshakeTest, FollowsTheLogin) {
  for (const auto& [name, complaints, confirmed, running, conversation] : kLogins) {
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

TEST_F(LoginHandshakeTest, StartsTheInquiryProgramWhereThereIsNoLoginServerYet) {
  const auto serverStarts = [&] {
    programs.Start(kLoginServer);
    OfficePrograms::LoginMaskReports(1);
  };
  programs.WillHear({Started().Meanwhile(serverStarts), Product(8), LoginEnded(1), Minimized()});
  EXPECT_EQ(library->UserInit(), kDelegateAnswer);
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
    MSG message{};
    EXPECT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, WM_QUIT);
    EXPECT_EQ(message.wParam, 7U);
    EXPECT_THAT(user.Messages(), testing::SizeIs(messages));
  }
}

// Every export with its delegate; the first argument is the same text each time.
struct DelegatedCall {
  const char* exportName;
  const char* delegate;                // null when there is none
  std::vector<const void*> arguments;  // null for a number, of which the library makes a text
  std::function<std::int32_t()> call;
};

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
  DelegatedCall CallOf(const char* name, std::int32_t(WINAPI* function)(Types...)) {
    const auto found = kDelegates.find(name);
    DelegatedCall made{name, found == kDelegates.end() ? nullptr : found->second, {}, {}};
    const std::tuple<Types...> values{Next<Types>(made.arguments)...};
    made.call = [function, values] { return std::apply(function, values); };
    return made;
  }

  std::vector<DelegatedCall> Calls() {
#define CALL_OF(name, delegate, arguments, fields, result) CallOf(#name, library->name),
    return {QLX99_EXPORTS(CALL_OF)};
#undef CALL_OF
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
  EXPECT_EQ(OutcomeText(0, record), "0 ");
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
  EXPECT_EQ(OutcomeText(0, record), "0 ");
}

TEST_F(DelegateTest, IsNotCalledWithoutAMappingRoot) {
  office.IsNotConfigured("MappingRoot");
  programs.Start(kInquiryProgram);
  for (const auto& [exportName, delegate, arguments, call] : Calls()) {
    programs.WillHear({Minimized()});
    EXPECT_EQ(call(), 0) << exportName;
  }
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
}

}  // namespace
}  // namespace qlx99::tests
