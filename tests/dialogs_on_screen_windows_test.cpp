// What the library does to the dialogs on a real screen, and what a person's keys do to them.
#include "addresses/bank_connection_file.h"
#include "addresses/contact_person_file.h"
#include "caseparties/case_party_file.h"
#include "cases/case_file.h"
#include "frame/attach.h"
#include "frame/login_window.h"
#include "platform/dialog_template.h"
#include "resources/resource.h"
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;

// What is done to the lists of a dialog, which cannot be asked for and so is overheard.
class Overheard {
 public:
  Overheard() : hook_(SetWindowsHookExA(WH_CALLWNDPROC, Overhear, nullptr, GetCurrentThreadId())) {}
  ~Overheard() { UnhookWindowsHookEx(hook_); }
  Overheard(const Overheard&) = delete;
  Overheard& operator=(const Overheard&) = delete;

  static inline std::vector<int> tabStops;  // the last ones
  static inline std::string order;  // "stops line hidden select ", and what else the test adds

 private:
  static void HearTabStops(const CWPSTRUCT& message) {
    const int* const first = reinterpret_cast<const int*>(message.lParam);
    tabStops.assign(first, first + message.wParam);
    order += "stops ";
  }

  static LRESULT CALLBACK Overhear(int code, WPARAM wordParam, LPARAM longParam) {
    const auto& message = *reinterpret_cast<const CWPSTRUCT*>(longParam);
    const bool isVisible = (GetWindowLongA(message.hwnd, GWL_STYLE) & WS_VISIBLE) != 0;
    if (code == HC_ACTION && message.message == LB_SETTABSTOPS) HearTabStops(message);
    if (message.message == LB_ADDSTRING) order += isVisible ? "line " : "hidden ";
    if (message.message == LB_SETCURSEL) order += "select ";
    return CallNextHookEx(nullptr, code, wordParam, longParam);
  }

  HHOOK hook_;
};

const std::string kLongName(115, 'n');

class DialogsOnScreen : public ScriptedExportTest {
 protected:
  DialogsOnScreen() {
    office.Has<CaseRecord>("id: 7, caseNumber: 12345678");
    for (const std::string id : {"1", "2"}) {
      office.Has<CasePartyRecord>("id: " + id + ", caseId: 7");
      office.Has<ContactPersonRecord>(
          "number: " + id + ", addressNumber: 4711, name: " + kLongName + ", firstName: Hans");
      office.Has<BankConnectionRecord>("number: " + id +
                                       ", addressNumber: 4712, bankName: Bank, accountNumber: 47");
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

int WidthOf(HWND list, const std::string& text) {
  HDC context = GetDC(list);
  SelectObject(context, reinterpret_cast<HGDIOBJ>(SendMessageA(list, WM_GETFONT, 0, 0)));
  SIZE size{};
  GetTextExtentPoint32A(context, text.c_str(), static_cast<int>(text.size()), &size);
  ReleaseDC(list, context);
  return size.cx;
}

// Where the second column of a line ends, behind as many tab stops as the first one needs.
int EndOf(HWND list, int tabStop, const std::string& first, const std::string& second) {
  RECT stop{0, 0, tabStop, 0};
  MapDialogRect(GetParent(list), &stop);
  return (WidthOf(list, first) / stop.right + 1) * stop.right + WidthOf(list, second);
}

HWND FocusOf(HWND dialog) {
  GUITHREADINFO thread{};
  thread.cbSize = sizeof thread;
  GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &thread);
  return thread.hwndFocus;
}

const struct {
  WORD form;
  const char* title;
  int list;
  int tabStop;
  std::string first;
  std::string second;
  const char* order;
} kDialogs[] = {{IDD_BANK_CHOICE, "Bankverbindung auswählen", IDC_BANK_LINES, 100, "Bank", "47",
                 "next stops line hidden next select stops line hidden next select "},
                {IDD_CONTACT_CHOICE, "Ansprechpartner auswählen", IDC_CONTACT_LINES, 80, kLongName,
                 "Hans", "next stops line hidden next select stops line hidden next select "},
                {IDD_PARTY_SELECTION, "Adressat auswählen", IDC_PARTY_LINES, 120, "", "",
                 "stops line hidden select line hidden select "}};

TEST_F(DialogsOnScreen, ScrollToTheirLongestLineAndEndAtEscape) {
  for (const auto* file : {"ZTBANK.KRV", "ZTPART.KRV"}) {
    for (int i = 0; i < 3; ++i) {
      manager.Meanwhile(btrieve::kGetNext, file, [] { Overheard::order += "next "; });
    }
  }
  const Overheard overheard;
  for (const auto& expected : kDialogs) {
    SCOPED_TRACE(expected.title);
    Overheard::order.clear();
    user.Does([&](OpenDialog& open) {
      HWND dialog = FindWindowA(nullptr, Ansi(expected.title).c_str());
      HWND list = GetDlgItem(dialog, expected.list);
      const bool isParty = expected.form == IDD_PARTY_SELECTION;
      const int end =
          isParty ? 500 : EndOf(list, expected.tabStop, expected.first, expected.second);
      const auto extent = static_cast<int>(SendMessageA(list, LB_GETHORIZONTALEXTENT, 0, 0));
      EXPECT_GE(extent, end);
      EXPECT_LE(extent, isParty ? 500 : end + 10);
      HWND focus = FocusOf(dialog);
      EXPECT_EQ(GetDlgCtrlID(focus), isParty ? expected.list : IDC_TAKE);
      SendMessageA(focus, WM_KEYDOWN, VK_DOWN, 0);
      EXPECT_EQ(SendMessageA(list, LB_GETCURSEL, 0, 0), isParty ? 1 : 0);
      open.Cancel();
    });
    Open(expected.form);
    EXPECT_THAT(Overheard::tabStops, ElementsAre(expected.tabStop));
    EXPECT_EQ(Overheard::order, expected.order);
    EXPECT_EQ(user.OnlyDialog().title, expected.title);
  }
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
