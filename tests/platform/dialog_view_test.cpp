// Dialogs on a host without Windows: what a person at the dialog sees and does, what the dialog
// procedure hears of it, and the terminal that stands in for a screen.
#include <gmock/gmock.h>

#include <sstream>
#include <string>

#include "platform/terminal_screen.h"
#include "support/user.h"
#include "test_library.h"

namespace {

using qlx99::tests::OpenDialog;
using testing::HasSubstr;

// Dialog 1 has the list 403 and the button 1, dialog 2 the list 201 and the button 9.
class View : public testing::Test {
 protected:
  View() { heard.clear(); }
  ~View() override { platform::SetScreen(nullptr); }

  // Returns the line that was taken, -1 for none, -2 for cancelled.
  INT_PTR Show(int id = 1) {
    return DialogBoxParamW(library_.Handle(), MAKEINTRESOURCEW(id), nullptr, Procedure,
                           id == 1 ? 403 : 201);
  }

  // The same at a terminal, to somebody who types `answers`.
  INT_PTR ShowAtTerminal(const std::string& answers, int id = 1) {
    std::istringstream in(answers);
    platform::TerminalScreen terminal(in, out_);
    platform::SetScreen(&terminal);
    return Show(id);
  }

  static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wordParam, LPARAM longParam) {
    static int listId = 0;
    const WORD command = LOWORD(wordParam);
    if (message == WM_INITDIALOG) {
      listId = static_cast<int>(longParam);
      for (const auto* line : {u"Müller\tSparkasse\t", u"\x1B[2J\tVolksbank", u"Meier"}) {
        SendDlgItemMessageW(dialog, listId, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line));
      }
      const int stop = 40;
      SendDlgItemMessageA(dialog, listId, LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&stop));
      SendDlgItemMessageA(dialog, listId, LB_SETCURSEL, 0, 0);
      SetDlgItemTextW(dialog, 107, u"Akte:");
      SetDlgItemTextW(dialog, 208, u"Adler ./. Berg");
      SetWindowTextW(dialog, listId == 201 ? u"anderer Titel" : u"Bank");
      return 0;
    }
    heard += std::to_string(message == WM_COMMAND ? command : 0) + '/' +
             std::to_string(wordParam >> 16) + ' ';
    if (message == WM_COMMAND && (command == IDOK || command == 9)) {
      EndDialog(dialog, SendDlgItemMessageA(dialog, listId, LB_GETCURSEL, 0, 0));
    }
    if (message == WM_COMMAND && command == IDCANCEL) EndDialog(dialog, -2);
    return 0;
  }

  std::ostringstream out_;
  static inline std::string heard;  // "control/notification ", "0/0 " of the dialog's end

 private:
  const TestLibrary library_;
};

TEST_F(View, ShowsWhatTheProcedureDidAndTellsItOfWhatAPersonCanDo) {
  qlx99::tests::User user;
  user.Does([](OpenDialog& dialog) {
    EXPECT_FALSE(dialog.Press(7)) << "hidden";
    EXPECT_FALSE(dialog.Press(403)) << "no button";
    EXPECT_FALSE(dialog.Press(999)) << "not there";
    EXPECT_FALSE(dialog.Select(601, 0)) << "hidden";
    EXPECT_FALSE(dialog.Select(403, 3)) << "no such line";
    EXPECT_FALSE(dialog.DoubleClick(403, -1)) << "no such line";
    EXPECT_FALSE(dialog.Select(206, 0)) << "no list";
    EXPECT_TRUE(dialog.Select(403, 1));
    EXPECT_EQ(dialog.Look().Control(403).selected, 1);
    EXPECT_TRUE(dialog.DoubleClick(403, 2));
    EXPECT_TRUE(dialog.IsOpen());
    EXPECT_TRUE(dialog.Press(IDOK));
    EXPECT_FALSE(dialog.Press(IDOK)) << "closed";
    EXPECT_FALSE(dialog.Select(403, 0)) << "closed";
    dialog.Cancel();
  });
  EXPECT_EQ(Show(), 2);
  EXPECT_EQ(heard, "403/1 403/1 403/2 1/0 0/0 ");
  user.Cancels();  // without a button for it
  EXPECT_EQ(Show(), -2);
}

TEST_F(View, AtATerminalHasColumnsAndNoOrders) {
  ShowAtTerminal("\n");
  ShowAtTerminal("0\n", 2);
  EXPECT_THAT(out_.str(), HasSubstr("\nBank\n"
                                    "Bitte wählen Sie. \n"
                                    "> 1  Müller    Sparkasse\n"
                                    "  2   [2J      Volksbank\n"
                                    "  3  Meier\n"
                                    "Nummer (Eingabe = 1, 0 = Abbruch): "));
  EXPECT_THAT(out_.str(), HasSubstr("\nanderer Titel\nAkte: Adler ./. Berg\n"));
  std::istringstream in;
  platform::TerminalScreen terminal(in, out_);
  platform::SetScreen(&terminal);
  EXPECT_EQ(MessageBoxW(nullptr, u"können nicht !\n €\a ", u"Systemmeldung !", MB_ICONHAND), IDOK);
  EXPECT_THAT(out_.str(), testing::EndsWith("\nSystemmeldung !\nkönnen nicht !\n €  \n"));
}

TEST_F(View, AtATerminalTakesTheLineOfTheNumberAndAsksAgainButNotForEver) {
  std::string nonsense;
  for (int i = 0; i < 1000; ++i) nonsense += "99\n";
  const std::pair<std::string, INT_PTR> rows[] = {
      {"\n", 0},   {"2\n", 1}, {" 3 \r\n", 2},       {"3", 2},
      {"0\n", -2}, {"", -2},   {"4\nx\n-1\n2\n", 1}, {nonsense, -2}};
  for (const auto& [answers, result] : rows) {
    EXPECT_EQ(ShowAtTerminal(answers, 1), result) << answers;
    EXPECT_EQ(ShowAtTerminal(answers, 2), result) << answers;
  }
  EXPECT_THAT(out_.str(), HasSubstr("nicht zur Wahl"));
}

class EmptyChair final : public platform::Screen {
  int ShowMessage(const platform::MessageBoxView& /*message*/) override { return 0; }
  void ShowDialog(platform::DialogView& /*dialog*/) override {}
};

TEST_F(View, EndsTheProcessBeyondWhatTheLayerKnows) {
  EmptyChair nobody;
  platform::SetScreen(&nobody);
  EXPECT_DEATH(Show(), "leaves open");
  EXPECT_DEATH(MessageBoxW(nullptr, u"?", u"?", 4), "MessageBoxW");
  EXPECT_DEATH(WideCharToMultiByte(1252, 0, u"x", 1, nullptr, 0, nullptr, nullptr),
               "WideCharToMultiByte");
}

}  // namespace
