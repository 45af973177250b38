// The other programs of an office of the delegated kind: the login server, the inquiry program and
// the sibling library. The windows of both programs are the test's own. A test says beforehand what
// they will hear, in its order, and what they do about it:
//
//   programs.Start(kLoginServer);
//   programs.WillHear({{"KRVLOGSRV32: WM_ISLOGGEDIN", 0}, {"TELQBASE: started 5 0"}, ...});
#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/export_test.h"
#include "testkit/qlx02.h"

namespace qlx99::tests {

namespace fs = std::filesystem;
using namespace testkit;

// By the classes of their windows.
inline constexpr const char* kLoginServer = "KRVLOGSRV32";
inline constexpr const char* kInquiryProgram = "TELQBASE";

// A message that reaches a program, with its parameters unless both are 0:
// "TELQBASE: WM_KRV_SHOWWINDOW 0 6". "TELQBASE: started 5 0" is its start, to be shown normally.
struct Heard {
  std::string what;
  LRESULT answer = 0;
  std::function<void()> deed = [] {};  // what happens before the answer

  Heard Meanwhile(std::function<void()> thisHappens) const {
    return {what, answer, std::move(thisHappens)};
  }
};

class OfficePrograms {
 public:
  // Configures the delegated kind and puts what belongs there below the mapping root.
  explicit OfficePrograms(Office& office);
  ~OfficePrograms();
  OfficePrograms(const OfficePrograms&) = delete;
  OfficePrograms& operator=(const OfficePrograms&) = delete;

  void Start(const std::string& program);

  // From now on, once they have heard what they were to hear before. Anything else fails the test
  // and closes the login mask, so that no wait is for ever.
  void WillHear(std::deque<Heard> messages);

  // Ends the programs that run. Fails the test when they have not heard everything.
  void End();

  // The login mask tells the library's hidden window: 1 for a login, 2 for closed without one.
  static void LoginMaskReports(int state);

  // "\bin32" below the mapping root.
  const fs::path& Bin32() const { return bin32_; }

  // How the sibling library was last called.
  static DelegateCall LastDelegateCall();

 private:
  static LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM wordParam, LPARAM longParam);

  LRESULT Hear(const std::string& what);

  fs::path bin32_;
  std::deque<Heard> expected_;
  std::vector<HWND> windows_;
};

// What they hear in the tests of the delegated kind, and these tests' fixture.
inline Heard LoggedIn(LRESULT answer) { return {"KRVLOGSRV32: WM_ISLOGGEDIN", answer}; }
inline Heard Product(LRESULT answer) { return {"KRVLOGSRV32: WM_GETCURRENTPRODUCTID", answer}; }
inline Heard ChangeLogin() { return {"KRVLOGSRV32: WM_CHANGELOGIN"}; }
inline Heard LoginEnded(LRESULT answer) { return {"KRVLOGSRV32: WM_ISENDLOGIN", answer}; }
inline Heard Started() { return {"TELQBASE: started 5 0"}; }
inline Heard Minimized() { return {"TELQBASE: WM_KRV_SHOWWINDOW 0 6"}; }

inline std::deque<Heard> Talk(const auto&... heard) { return {heard...}; }

inline std::function<void()> Mask(int state) {
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

}  // namespace qlx99::tests
