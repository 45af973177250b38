#include <gmock/gmock.h>

#include <sstream>
#include <string>

#include "platform/terminal_screen.h"
#include "platform/windows_api.h"
#include "test_library.h"

namespace {

using testing::HasSubstr;

class Terminal : public testing::Test {
 protected:
  Terminal() { platform::SetScreen(&screen_); }
  ~Terminal() override { platform::SetScreen(nullptr); }

  /// Shows dialog `id` to somebody who types `answers`; returns the line taken, -1 for none, -2 for
  /// cancelled.
  INT_PTR Show(const std::string& answers, int id = 1) {
    in_ = std::istringstream(answers);
    return DialogBoxParamA(library_.Handle(), MAKEINTRESOURCEA(id), nullptr, Procedure,
                           id == 1 ? 403 : 201);
  }

  static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wordParam, LPARAM longParam) {
    static int listId = 0;
    if (message == WM_INITDIALOG) {
      listId = static_cast<int>(longParam);
      for (const char* line : {"M\xFCller\tSparkasse\t", "\x1B[2J\tVolksbank", "Meier"}) {
        SendDlgItemMessageA(dialog, listId, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line));
      }
      const int stop = 40;
      SendDlgItemMessageA(dialog, listId, LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&stop));
      SendDlgItemMessageA(dialog, listId, LB_SETCURSEL, 0, 0);
      SetDlgItemTextA(dialog, 208, "Adler ./. Berg");
    } else if (message == WM_COMMAND && (LOWORD(wordParam) == IDOK || LOWORD(wordParam) == 9)) {
      EndDialog(dialog, SendDlgItemMessageA(dialog, listId, LB_GETCURSEL, 0, 0));
    } else if (message == WM_COMMAND && LOWORD(wordParam) == IDCANCEL) {
      EndDialog(dialog, -2);
    }
    return 0;
  }

  std::istringstream in_;
  std::ostringstream out_;

 private:
  platform::TerminalScreen screen_{in_, out_};
  const TestLibrary library_;
};

TEST_F(Terminal, ShowsADialogAsTextWithColumns) {
  Show("\n");
  EXPECT_EQ(out_.str(),
            "\n"
            "Bank auswählen\n"
            "Bitte wählen Sie. \n"
            "> 1  Müller    Sparkasse\n"
            "  2   [2J      Volksbank\n"
            "  3  Meier\n"
            "Nummer (Eingabe = 1, 0 = Abbruch): ");
}

TEST_F(Terminal, ShowsWhatAFieldHoldsBehindItsLabel) {
  Show("0\n", 2);
  EXPECT_THAT(out_.str(), HasSubstr("Rubrum: Adler ./. Berg\n"));
}

TEST_F(Terminal, TakesTheLineOfTheNumber) {
  struct Case {
    const char* answers;
    INT_PTR result;
  };
  for (const auto& [answers, result] :
       {Case{"\n", 0}, Case{"2\n", 1}, Case{" 3 \r\n", 2}, Case{"3", 2}, Case{"0\n", -2},
        Case{"", -2}, Case{"4\nx\n-1\n2\n", 1}}) {
    for (const int id : {1, 2}) {
      EXPECT_EQ(Show(answers, id), result) << answers << " in dialog " << id;
    }
  }
}

TEST_F(Terminal, AsksAgainButNotForEver) {
  std::string answers;
  for (int i = 0; i < 1000; ++i) {
    answers += "99\n";
  }
  EXPECT_EQ(Show(answers), -2);
  EXPECT_THAT(out_.str(), HasSubstr("nicht zur Wahl"));
}

TEST_F(Terminal, ShowsAMessageWithoutWaiting) {
  EXPECT_EQ(MessageBoxA(nullptr, "k\xF6nnen nicht !\n \x80\x07 ", "Systemmeldung !", MB_ICONHAND),
            IDOK);
  EXPECT_EQ(out_.str(), "\nSystemmeldung !\nkönnen nicht !\n €  \n");
}

}  // namespace
