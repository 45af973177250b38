// What the library does to the dialogs on a real screen, and what a person's keys do to them; and
// what the tool does without one.
#include "office/sample_office.h"
#include "resources/resource.h"
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

// The tab stop that a list was given last, which cannot be asked for and so is overheard.
int lastTabStop = 0;

LRESULT CALLBACK Overhear(int code, WPARAM wordParam, LPARAM longParam) {
  const auto& message = *reinterpret_cast<const CWPSTRUCT*>(longParam);
  if (message.message == LB_SETTABSTOPS)
    lastTabStop = *reinterpret_cast<const int*>(message.lParam);
  return CallNextHookEx(nullptr, code, wordParam, longParam);
}

using DialogsOnScreen = ExampleOfficeTest;

TEST_F(DialogsOnScreen, StandInColumnsAndHearTheKeys) {
  const struct {
    const char* title;
    int list;
    int tabStop;
    bool isParty;
  } dialogs[] = {{"Ansprechpartner auswählen", IDC_CONTACT_LINES, 80, false},
                 {"Bankverbindung auswählen", IDC_BANK_LINES, 100, false},
                 {"Adressat auswählen", IDC_PARTY_LINES, 120, true}};
  office.Has<ContactPersonRecord>("number: 256, addressNumber: 4711");
  office.Has<BankConnectionRecord>("number: 256, addressNumber: 4711");
  HHOOK hook = SetWindowsHookExA(WH_CALLWNDPROC, Overhear, nullptr, GetCurrentThreadId());
  for (const auto& expected : dialogs) {
    user.Does([&](OpenDialog& open) {
      SCOPED_TRACE(expected.title);
      HWND dialog = FindWindowA(nullptr, Ansi(expected.title).c_str());
      EXPECT_EQ(lastTabStop, expected.tabStop);
      EXPECT_EQ(GetDlgCtrlID(GetFocus()), expected.isParty ? expected.list : IDC_TAKE);
      SendMessageA(GetFocus(), WM_KEYDOWN, VK_DOWN, 0);
      EXPECT_EQ(SendDlgItemMessageA(dialog, expected.list, LB_GETCURSEL, 0, 0), expected.isParty);
      open.Cancel();
    });
  }
  library->ALesenDLL("", "4711", CallerBuffer(), "");
  library->BLesenDLL("  ", "12345678", nullptr, nullptr, CallerBuffer());
  UnhookWindowsHookEx(hook);
}

// As a service or a task runs the tool: on a window station that nobody sees.
class QlxWithoutAScreen : public SampleOffice {};

TEST_F(QlxWithoutAScreen, WritesMessagesInsteadOfWaitingForSomebodyToReadThem) {
  HWINSTA const screen = GetProcessWindowStation();
  HWINSTA const unseen = CreateWindowStationA(nullptr, 0, WINSTA_ALL_ACCESS, nullptr);
  ASSERT_TRUE(SetProcessWindowStation(unseen));
  EXPECT_EQ(Qlx("call|WVNew|12345678|1|morgen|1|0|0|x").err,
            "Systemmeldung !\nGeben Sie bitte ein Datum an !\n");
  EXPECT_THAT(Qlx("letter|98010042").err, testing::HasSubstr("A choice was not made"));
  SetProcessWindowStation(screen);
  CloseWindowStation(unseen);
}

}  // namespace
}  // namespace qlx99::tests
