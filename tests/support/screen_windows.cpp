// The person at the screen of Windows: a thread that sees to the dialogs and message boxes of this
// process as they appear, while the main thread waits in them.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "support/text.h"
#include "support/user.h"

namespace qlx99::tests {
namespace {

using namespace std::chrono_literals;

constexpr auto kGlance = 1ms;       // from one look at the screen to the next
constexpr UINT kPatience = 10'000;  // in milliseconds, with a window that does not answer

constexpr const char* kDialogClass = "#32770";
constexpr int kMessageText = 0xFFFF;  // the control of that id that every message box has

// What the window answers; nothing when it is gone or, which fails the test, does not answer.
std::optional<LRESULT> Ask(HWND window, UINT message, WPARAM wordParam = 0, LPARAM longParam = 0) {
  DWORD_PTR answer = 0;
  if (SendMessageTimeoutW(window, message, wordParam, longParam, SMTO_NORMAL, kPatience, &answer) ==
      0) {
    EXPECT_FALSE(IsWindow(window)) << "a window does not answer message " << message;
    return std::nullopt;
  }
  return static_cast<LRESULT>(answer);
}

// Wide, because this program's code page may be one that the office does not speak.
std::string TextOf(HWND window) {
  std::array<char16_t, 4096> text{};
  Ask(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  return Utf8(std::u16string_view(text.data()));
}

std::string LineOf(HWND list, WPARAM index) {
  const auto length = static_cast<std::size_t>(Ask(list, LB_GETTEXTLEN, index).value_or(0));
  std::u16string line(length + 1, u'\0');
  Ask(list, LB_GETTEXT, index, reinterpret_cast<LPARAM>(line.data()));
  return Utf8(std::u16string_view(line.c_str()));
}

bool HasClass(HWND window, const char* name) {
  std::array<char, 20> actual{};
  GetClassNameA(window, actual.data(), static_cast<int>(actual.size()));
  return lstrcmpiA(actual.data(), name) == 0;
}

bool HasStyle(HWND window, DWORD style) {
  return (static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)) & style) != 0;
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
  const auto count = static_cast<WPARAM>(Ask(control, LB_GETCOUNT).value_or(0));
  for (WPARAM i = 0; i < count; ++i) shown.lines.push_back(LineOf(control, i));
  shown.selected = static_cast<int>(Ask(control, LB_GETCURSEL).value_or(LB_ERR));
  shown.horizontalExtent = static_cast<int>(Ask(control, LB_GETHORIZONTALEXTENT).value_or(0));
  return shown;
}

// The control of the dialog, if it is of that class and a person can get at it.
HWND Reachable(HWND dialog, int id, const char* controlClass) {
  HWND control = IsWindowVisible(dialog) ? GetDlgItem(dialog, id) : nullptr;
  const bool reachable = control != nullptr && HasClass(control, controlClass) &&
                         IsWindowVisible(control) && IsWindowEnabled(control);
  return reachable ? control : nullptr;
}

// With the mouse, in the middle of the line.
bool Click(HWND list, int index, std::initializer_list<UINT> mouseMessages) {
  if (list == nullptr || index < 0 || index >= Ask(list, LB_GETCOUNT)) return false;
  const auto line = static_cast<WPARAM>(index);
  RECT place{};
  Ask(list, LB_SETTOPINDEX, line);
  Ask(list, LB_GETITEMRECT, line, reinterpret_cast<LPARAM>(&place));
  const LPARAM middle = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
  for (const UINT message : mouseMessages) {
    Ask(list, message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON, middle);
  }
  return true;
}

struct MessageIcon {
  LPSTR icon;
  UINT style;
};

const MessageIcon kIcons[] = {{IDI_HAND, MB_ICONHAND},
                              {IDI_QUESTION, MB_ICONQUESTION},
                              {IDI_EXCLAMATION, MB_ICONEXCLAMATION},
                              {IDI_ASTERISK, MB_ICONASTERISK}};

// What is to be seen of it: the icon, whether it stays above all other windows, and whether OK is
// the only button.
UINT StyleOf(HWND messageBox) {
  UINT style = MB_OK;
  if ((GetWindowLongA(messageBox, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0) style |= MB_SYSTEMMODAL;
  ForEachControl(messageBox, [&](HWND control) {
    if (!HasStyle(control, WS_VISIBLE)) return;
    if (HasClass(control, "BUTTON") && GetDlgCtrlID(control) != IDOK) style |= MB_TYPEMASK;
    const LRESULT shown = HasClass(control, "STATIC") ? Ask(control, STM_GETICON).value_or(0) : 0;
    for (const auto& [icon, iconStyle] : kIcons) {
      if (shown != 0 && reinterpret_cast<HICON>(shown) == LoadIconA(nullptr, icon)) {
        style |= iconStyle;
      }
    }
  });
  return style;
}

// Once it has answered: one that ends while it begins is visible for a moment, too.
bool IsWaiting(HWND window) {
  return IsWindowVisible(window) && Ask(window, WM_NULL) && IsWindowVisible(window);
}

class Person {
 public:
  // Returns when no other user is busy any more.
  void Serve(User* user) {
    const std::lock_guard lock(mutex_);
    user_ = user;
  }

  void WatchUntil(const std::atomic<bool>& end) {
    for (; !end; std::this_thread::sleep_for(kGlance)) {
      HWND window = nullptr;
      while ((window = FindWindowExA(nullptr, window, kDialogClass, nullptr)) != nullptr) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        const bool isNew = std::find(known_.begin(), known_.end(), window) == known_.end();
        if (process == GetCurrentProcessId() && isNew && IsWaiting(window)) Show(window);
      }
    }
  }

 private:
  void Show(HWND window) {
    const std::lock_guard lock(mutex_);
    known_.push_back(window);
    OpenDialog dialog(window);
    HWND text = GetDlgItem(window, kMessageText);
    if (user_ == nullptr) ADD_FAILURE() << "nobody expects " << dialog.Look();
    if (text == nullptr) {
      user_ == nullptr ? dialog.Cancel() : user_->Sees(dialog);
    } else {
      if (user_ != nullptr) user_->Sees({TextOf(text), TextOf(window), StyleOf(window)});
      Ask(FindWindowExA(window, nullptr, "BUTTON", nullptr), BM_CLICK);
    }
    if (dialog.IsOpen()) {
      ADD_FAILURE() << "cannot be closed: " << dialog.Look();
    } else {
      std::erase(known_, window);
    }
  }

  std::recursive_mutex mutex_;  // what is open may lead to something else
  User* user_ = nullptr;
  // Being shown to the user, or hopeless: those stay open until the test's time is over.
  std::vector<HWND> known_;
};

// Not destroyed, as its thread watches until the process ends.
Person& ThePerson() {
  static auto& person = *new Person;
  return person;
}

constexpr UINT kCall = WM_APP;

LRESULT CALLBACK HostProc(HWND window, UINT message, WPARAM wordParam, LPARAM longParam) {
  if (message != kCall) return DefWindowProcA(window, message, wordParam, longParam);
  (*reinterpret_cast<const std::function<void()>*>(longParam))();
  return 0;
}

// The word processor's window, on the thread that calls the library.
HWND host = nullptr;

}  // namespace

ShownDialog OpenDialog::Look() const {
  ShownDialog shown{TextOf(window_), {}};
  ForEachControl(window_, [&](HWND control) { shown.controls.push_back(LookAt(control)); });
  return shown;
}

bool OpenDialog::IsOpen() const { return IsWindowVisible(window_) != FALSE; }

bool OpenDialog::Select(int listId, int index) {
  return Click(Reachable(window_, listId, "LISTBOX"), index, {WM_LBUTTONDOWN, WM_LBUTTONUP});
}

bool OpenDialog::DoubleClick(int listId, int index) {
  return Click(Reachable(window_, listId, "LISTBOX"), index,
               {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP});
}

bool OpenDialog::Press(int buttonId) {
  HWND button = Reachable(window_, buttonId, "BUTTON");
  return button != nullptr && Ask(button, BM_CLICK);
}

// By the close box where there is one, or else by the Escape key.
void OpenDialog::Cancel() {
  const bool closes = HasStyle(window_, WS_SYSMENU);
  PostMessageA(window_, closes ? WM_SYSCOMMAND : WM_KEYDOWN, closes ? SC_CLOSE : VK_ESCAPE, 0);
  for (UINT waited = 0; IsOpen() && waited < kPatience; ++waited) std::this_thread::sleep_for(1ms);
}

void WatchTheScreen() {
  static const std::atomic<bool> never = false;
  std::thread([] { ThePerson().WatchUntil(never); }).detach();
}

void ShowTheScreenTo(User* user) {
  ThePerson().Serve(user);
  if (host != nullptr) DestroyWindow(std::exchange(host, nullptr));
  if (user == nullptr) return;
  host = CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                         GetModuleHandleA(nullptr), nullptr);
  SetWindowLongPtrA(host, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&HostProc));
}

// Posted, as a click on the host's toolbar is.
void LetTheHostCall(const std::function<void()>& call) {
  std::atomic<bool> isDone = false;
  const std::function<void()> callToTheEnd = [&] {
    call();
    isDone = true;
  };
  PostMessageA(host, kCall, 0, reinterpret_cast<LPARAM>(&callToTheEnd));
  ThePerson().WatchUntil(isDone);
}

}  // namespace qlx99::tests
