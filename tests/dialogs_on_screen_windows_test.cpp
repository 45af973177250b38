// What the library does to the dialogs on a real screen, and what a person's keys do to them.
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

}  // namespace
}  // namespace qlx99::tests
