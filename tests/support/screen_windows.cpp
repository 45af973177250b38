// The person at the screen of Windows, who sees to the dialogs and message boxes of this thread as
// they appear: a timer, which goes on while the thread waits in them.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "support/text.h"
#include "support/user.h"

namespace qlx99::tests {
namespace {

constexpr const char* kDialogClass = "#32770";
constexpr int kMessageText = 0xFFFF;  // the control of that id that every message box has

// Wide, because this program's code page may be one that the office does not speak.
std::string TextOf(HWND window, UINT message = WM_GETTEXT, WPARAM wordParam = 4096) {
  std::array<char16_t, 4096> text{};
  SendMessageW(window, message, wordParam, reinterpret_cast<LPARAM>(text.data()));
  return Utf8(std::u16string_view(text.data()));
}

bool HasClass(HWND window, const char* name) {
  std::array<char, 20> actual{};
  GetClassNameA(window, actual.data(), static_cast<int>(actual.size()));
  return lstrcmpiA(actual.data(), name) == 0;
}

template <class Action>
void ForEachControl(HWND dialog, Action action) {
  for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr;
       control = GetWindow(control, GW_HWNDNEXT)) {
    action(control);
  }
}

ShownControl LookAt(HWND control) {
  const auto style = static_cast<DWORD>(GetWindowLongA(control, GWL_STYLE));
  ShownControl shown{GetDlgCtrlID(control), TextOf(control), style, {}, -1, 0};
  if (!HasClass(control, "LISTBOX")) return shown;
  const auto ask = [=](UINT message) {
    return static_cast<int>(SendMessageA(control, message, 0, 0));
  };
  for (int i = 0; i < ask(LB_GETCOUNT); ++i) {
    shown.lines.push_back(TextOf(control, LB_GETTEXT, static_cast<WPARAM>(i)));
  }
  shown.selected = ask(LB_GETCURSEL);
  shown.horizontalExtent = ask(LB_GETHORIZONTALEXTENT);
  return shown;
}

// The control of the dialog, if it is of that class and a person can get at it.
HWND Reachable(HWND dialog, int id, const char* controlClass) {
  HWND control = GetDlgItem(dialog, id);
  const bool reachable =
      HasClass(control, controlClass) && IsWindowVisible(control) && IsWindowEnabled(control);
  return reachable ? control : nullptr;
}

// As far as it is to be seen and the library makes use of it.
UINT StyleOf(HWND messageBox) {
  const bool isAbove = (GetWindowLongA(messageBox, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
  UINT style = isAbove ? MB_SYSTEMMODAL : MB_OK;
  ForEachControl(messageBox, [&](HWND control) {
    const LRESULT icon = HasClass(control, "STATIC") ? SendMessageA(control, STM_GETICON, 0, 0) : 0;
    if (reinterpret_cast<HICON>(icon) == LoadIconA(nullptr, IDI_HAND)) style |= MB_ICONHAND;
  });
  return style;
}

User* currentUser = nullptr;

void Show(HWND window) {
  OpenDialog dialog(window);
  HWND text = GetDlgItem(window, kMessageText);
  if (currentUser == nullptr) {
    ADD_FAILURE() << "nobody expects " << dialog.Look().title;
  } else if (text == nullptr) {
    currentUser->Sees(dialog);
  } else {
    currentUser->Sees({TextOf(text), TextOf(window), StyleOf(window)});
    SendMessageA(FindWindowExA(window, nullptr, "BUTTON", nullptr), BM_CLICK, 0, 0);
  }
  if (currentUser == nullptr || dialog.IsOpen()) EndDialog(window, IDCANCEL);
}

void CALLBACK Glance(HWND /*none*/, UINT /*message*/, UINT_PTR /*timer*/, DWORD /*time*/) {
  static std::vector<HWND> known;  // what is open may lead to something else
  HWND window = nullptr;
  while ((window = FindWindowExA(nullptr, window, kDialogClass, nullptr)) != nullptr) {
    if (GetWindowThreadProcessId(window, nullptr) != GetCurrentThreadId()) continue;
    if (!IsWindowVisible(window) || std::ranges::find(known, window) != known.end()) continue;
    known.push_back(window);
    Show(window);
    std::erase(known, window);
    return;
  }
}

}  // namespace

ShownDialog OpenDialog::Look() const {
  ShownDialog shown{TextOf(window_), {}};
  ForEachControl(window_, [&](HWND control) { shown.controls.push_back(LookAt(control)); });
  return shown;
}

bool OpenDialog::IsOpen() const { return IsWindowVisible(window_) != FALSE; }

// With the mouse, in the middle of the line.
bool OpenDialog::Select(int listId, int index) {
  HWND list = Reachable(window_, listId, "LISTBOX");
  if (list == nullptr || index < 0 || index >= SendMessageA(list, LB_GETCOUNT, 0, 0)) return false;
  const auto line = static_cast<WPARAM>(index);
  RECT place{};
  SendMessageA(list, LB_SETTOPINDEX, line, 0);
  SendMessageA(list, LB_GETITEMRECT, line, reinterpret_cast<LPARAM>(&place));
  const LPARAM middle = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
  SendMessageA(list, WM_LBUTTONDOWN, MK_LBUTTON, middle);
  SendMessageA(list, WM_LBUTTONUP, 0, middle);
  return true;
}

bool OpenDialog::Press(int buttonId) {
  HWND button = Reachable(window_, buttonId, "BUTTON");
  if (button != nullptr) SendMessageA(button, BM_CLICK, 0, 0);
  return button != nullptr;
}

void OpenDialog::Cancel() {
  MSG escape{};
  escape.hwnd = window_;
  escape.message = WM_KEYDOWN;
  escape.wParam = VK_ESCAPE;
  IsDialogMessageA(window_, &escape);
}

void WatchTheScreen() { SetTimer(nullptr, 0, USER_TIMER_MINIMUM, Glance); }

void ShowTheScreenTo(User* user) { currentUser = user; }

}  // namespace qlx99::tests
