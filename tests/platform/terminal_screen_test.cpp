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
    const LPARAM listId = id == 1 ? 403 : 201;
    return DialogBoxParamA(library_.Handle(), MAKEINTRESOURCEA(id), nullptr, Procedure, listId);
  }

  static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wordParam, LPARAM longParam) {
    static int listId = 0;
    const WORD command = LOWORD(wordParam);
    if (message == WM_INITDIALOG) {
      listId = static_cast<int>(longParam);
      for (const char* line : {"M\xFCller\tSparkasse\t", "\x1B[2J\tVolksbank", "Meier"}) {
        SendDlgItemMessageA(dialog, listId, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line));
      }
      const int stop = 40;
      SendDlgItemMessageA(dialog, listId, LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&stop));
      SendDlgItemMessageA(dialog, listId, LB_SETCURSEL, 0, 0);
      SetDlgItemTextA(dialog, 208, "Adler ./. Berg");
    }
    if (message != WM_COMMAND) return 0;
    if (command == IDOK || command == 9) {
      EndDialog(dialog, SendDlgItemMessageA(dialog, listId, LB_GETCURSEL, 0, 0));
    }
    if (command == IDCANCEL) EndDialog(dialog, -2);
    return 0;
  }

  std::istringstream in_;
  std::ostringstream out_;

 private:
  platform::TerminalScreen screen_{in_, out_};
  const TestLibrary library_;
};

TEST_F(Terminal, ShowsTextsWithColumnsAndNoOrders) {
  Show("\n");
  EXPECT_EQ(MessageBoxA(nullptr, "k\xF6nnen nicht !\n \x80\x07 ", "Systemmeldung !", MB_ICONHAND),
            IDOK);
  EXPECT_EQ(out_.str(),
            "\n"
            "Bank auswählen\n"
            "Bitte wählen Sie. \n"
            "> 1  Müller    Sparkasse\n"
            "  2   [2J      Volksbank\n"
            "  3  Meier\n"
            "Nummer (Eingabe = 1, 0 = Abbruch): "
            "\nSystemmeldung !\nkönnen nicht !\n €  \n");
  Show("0\n", 2);
  EXPECT_THAT(out_.str(), HasSubstr("Rubrum: Adler ./. Berg\n")) << "behind its label";
}

TEST_F(Terminal, TakesTheLineOfTheNumberAndAsksAgainButNotForEver) {
  std::string nonsense;
  for (int i = 0; i < 1000; ++i) nonsense += "99\n";
  const std::pair<std::string, INT_PTR> rows[] = {
      {"\n", 0},   {"2\n", 1}, {" 3 \r\n", 2},       {"3", 2},
      {"0\n", -2}, {"", -2},   {"4\nx\n-1\n2\n", 1}, {nonsense, -2}};
  for (const auto& [answers, result] : rows) {
    EXPECT_EQ(Show(answers, 1), result) << answers;
    EXPECT_EQ(Show(answers, 2), result) << answers;
  }
  EXPECT_THAT(out_.str(), HasSubstr("nicht zur Wahl"));
}

}  // namespace
