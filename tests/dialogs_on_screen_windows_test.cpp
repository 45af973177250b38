// What the library does to the dialogs on a real screen, and what a person's keys do to them.
#include "addresses/bank_connection_file.h"
#include "addresses/contact_person_file.h"
#include "caseparties/case_party_file.h"
#include "cases/case_file.h"
#include "frame/attach.h"
#include "frame/login_window.h"
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

class DialogsOnScreen : public ExportTest {
 protected:
  DialogsOnScreen() {
    office.Has<CaseRecord>("id: 7, caseNumber: 12345678");
    for (const std::string id : {"1", "2"}) {
      office.Has<CasePartyRecord>("id: " + id + ", caseId: 7");
      office.Has<ContactPersonRecord>("number: " + id + ", addressNumber: 4711");
      office.Has<BankConnectionRecord>("number: " + id + ", addressNumber: 4712");
    }
  }

  // What the macro asks for so that the dialog appears.
  void Open(int dialog) {
    CallerBuffer buffer;
    if (dialog == IDD_PARTY_SELECTION) {
      library->BLesenDLL("  ", "12345678", nullptr, nullptr, buffer);
    } else {
      library->ALesenDLL("", dialog == IDD_CONTACT_CHOICE ? "4711" : "4712", buffer, "");
    }
  }
};

const struct {
  WORD form;
  const char* title;
  int list;
  int tabStop;
} kDialogs[] = {{IDD_BANK_CHOICE, "Bankverbindung auswählen", IDC_BANK_LINES, 100},
                {IDD_CONTACT_CHOICE, "Ansprechpartner auswählen", IDC_CONTACT_LINES, 80},
                {IDD_PARTY_SELECTION, "Adressat auswählen", IDC_PARTY_LINES, 120}};

TEST_F(DialogsOnScreen, StandInColumnsAndHearTheKeys) {
  HHOOK hook = SetWindowsHookExA(WH_CALLWNDPROC, Overhear, nullptr, GetCurrentThreadId());
  for (const auto& expected : kDialogs) {
    SCOPED_TRACE(expected.title);
    user.Does([&](OpenDialog& open) {
      HWND dialog = FindWindowA(nullptr, Ansi(expected.title).c_str());
      const bool isParty = expected.form == IDD_PARTY_SELECTION;
      EXPECT_EQ(GetDlgCtrlID(GetFocus()), isParty ? expected.list : IDC_TAKE);
      SendMessageA(GetFocus(), WM_KEYDOWN, VK_DOWN, 0);
      EXPECT_EQ(SendDlgItemMessageA(dialog, expected.list, LB_GETCURSEL, 0, 0), isParty ? 1 : 0);
      open.Cancel();
    });
    Open(expected.form);
    EXPECT_EQ(lastTabStop, expected.tabStop);
  }
  UnhookWindowsHookEx(hook);
}

// By the library that is built into this program.
TEST(LoginWindow, HasAnOrdinaryFrameThatIsHidden) {
  AttachLibrary(GetModuleHandleA(nullptr));
  CreateLoginWindow();
  HWND window = FindWindowA("KrvQLX", nullptr);
  EXPECT_EQ(static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)),
            WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_CLIPSIBLINGS);
  DetachLibrary(Detachment::kFreed);
}

}  // namespace
}  // namespace qlx99::tests
