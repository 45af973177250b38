// The fixture of the tests of the delegated kind, and what the office's other programs hear in it.
#pragma once

#include "support/export_test.h"
#include "support/office_programs.h"

namespace qlx99::tests {

namespace fs = std::filesystem;

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
