// What Windows makes of the dialogs: windows in their places, and what a person's keys do to them.
#include "addresses/address_files.h"
#include "addresses/party_files.h"
#include "caseparties/case_party_file.h"
#include "cases/case_file.h"
#include "resources/resource.h"
#include "support/dialog_form.h"
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;

// The tab stops that list boxes were given, which cannot be asked for and so are overheard.
class OverheardTabStops {
 public:
  OverheardTabStops()
      : hook_(SetWindowsHookExA(WH_CALLWNDPROC, Overhear, nullptr, GetCurrentThreadId())) {}
  ~OverheardTabStops() { UnhookWindowsHookEx(hook_); }
  OverheardTabStops(const OverheardTabStops&) = delete;
  OverheardTabStops& operator=(const OverheardTabStops&) = delete;

  static inline std::vector<int> last;

 private:
  static LRESULT CALLBACK Overhear(int code, WPARAM wordParam, LPARAM longParam) {
    const auto& message = *reinterpret_cast<const CWPSTRUCT*>(longParam);
    if (code == HC_ACTION && message.message == LB_SETTABSTOPS) {
      const int* const first = reinterpret_cast<const int*>(message.lParam);
      last.assign(first, first + message.wParam);
    }
    return CallNextHookEx(nullptr, code, wordParam, longParam);
  }

  HHOOK hook_;
};

class DialogsOnScreen : public ExportTest {
 protected:
  DialogsOnScreen() {
    using B = BankConnectionRecord;
    using C = ContactPersonRecord;
    using P = CasePartyRecord;
    office.Has<CaseRecord>("id: 7, caseNumber: 12345678");
    for (const std::string id : {"1", "2"}) {
      office.Has<P>("id: " + id + ", caseId: 7");
      office.Has<C>("number: " + id + ", addressNumber: 4711");
      office.Has<B>("number: " + id + ", addressNumber: 4712");
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

int HeightOf(const RECT& rect) { return rect.bottom - rect.top; }
int WidthOf(const RECT& rect) { return rect.right - rect.left; }

// Each control lies where the template says; a list box is cut down to whole lines.
void ExpectControlsInTheirPlaces(HWND dialog, const DialogForm& form) {
  for (const auto& [style, place, id, windowClass, text] : form.controls) {
    SCOPED_TRACE(id);
    RECT expected{place.x, place.y, place.width, place.height};
    RECT actual{};
    HWND control = GetDlgItem(dialog, id);
    MapDialogRect(dialog, &expected);
    GetWindowRect(control, &actual);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&actual), 2);
    EXPECT_EQ(actual.left, expected.left);
    EXPECT_EQ(actual.top, expected.top);
    EXPECT_EQ(WidthOf(actual), expected.right);
    const auto lineHeight = SendMessageA(control, LB_GETITEMHEIGHT, 0, 0);
    EXPECT_LE(HeightOf(actual), expected.bottom);
    EXPECT_GE(HeightOf(actual), expected.bottom - (windowClass == "LISTBOX" ? lineHeight : 0));
  }
}

void ExpectCentredInItsSize(HWND dialog, const DialogForm& form) {
  RECT expected{0, 0, form.place.width, form.place.height};
  MapDialogRect(dialog, &expected);
  RECT inside{};
  GetClientRect(dialog, &inside);
  EXPECT_EQ(inside.right, expected.right);
  EXPECT_EQ(inside.bottom, expected.bottom);

  RECT screen{};
  RECT window{};
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &screen, 0);
  GetWindowRect(dialog, &window);
  EXPECT_NEAR(window.left + window.right, screen.left + screen.right, 1);
  EXPECT_NEAR(window.top + window.bottom, screen.top + screen.bottom, 1);
}

TEST_F(DialogsOnScreen, StandInTheirPlacesUntilEscapeIsPressed) {
  const struct {
    WORD form;
    const char* title;
    int list;
    int tabStop;
    int horizontalExtent;
  } dialogs[] = {{IDD_BANK_CHOICE, "Bankverbindung auswählen", IDC_BANK_LINES, 100, 0},
                 {IDD_CONTACT_CHOICE, "Ansprechpartner auswählen", IDC_CONTACT_LINES, 80, 0},
                 {IDD_PARTY_SELECTION, "Adressat auswählen", IDC_PARTY_LINES, 120, 500}};
  const OverheardTabStops tabStops;
  for (const auto& expected : dialogs) {
    SCOPED_TRACE(expected.title);
    user.Does([&](OpenDialog& open) {
      HWND dialog = FindWindowA(nullptr, Ansi(expected.title).c_str());
      const DialogForm form = FormOf(library->module, expected.form);
      ExpectControlsInTheirPlaces(dialog, form);
      ExpectCentredInItsSize(dialog, form);
      HWND list = GetDlgItem(dialog, expected.list);
      EXPECT_EQ(SendMessageA(list, LB_GETHORIZONTALEXTENT, 0, 0), expected.horizontalExtent);
      PostMessageA(dialog, WM_KEYDOWN, VK_ESCAPE, 0);
      for (int i = 0; i < 5000 && open.IsOpen(); ++i) Sleep(1);
    });
    Open(expected.form);
    EXPECT_THAT(OverheardTabStops::last, ElementsAre(expected.tabStop));
    EXPECT_EQ(user.OnlyDialog().title, expected.title);
  }
}

}  // namespace
}  // namespace qlx99::tests
