#include "desk.h"

#include <array>
#include <string_view>

#include "failure.h"
#include "frame/login_window.h"

namespace automation {
namespace {

constexpr UINT kWork = WM_APP;       // of a Task
constexpr UINT kShown = WM_APP + 1;  // of a dialog
constexpr UINT kEnd = WM_APP + 2;

bool HasClass(HWND window, std::string_view wanted) {
  std::array<char, 16> name{};
  GetClassNameA(window, name.data(), static_cast<int>(name.size()));
  return name.data() == wanted;
}

bool IsDialog(HWND window) { return HasClass(window, "#32770"); }

}  // namespace

// Work that somebody waits for, until it is done or refused.
struct Desk::Task {
  const std::function<void()>& work;
  HANDLE finished = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  bool refused = false;
};

Desk* Desk::desk = nullptr;

Desk::Desk()
    : window_(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                              nullptr)),
      hook_(SetWindowsHookExW(WH_CBT, Watch, nullptr, GetCurrentThreadId())) {
  desk = this;
  SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Hear));
}

Desk::~Desk() {
  UnhookWindowsHookEx(hook_);
  DestroyWindow(window_);
  desk = nullptr;
}

void Desk::Serve() {
  MSG message;
  while (!ended_ && GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  while (PeekMessageW(&message, window_, kWork, kWork, PM_REMOVE) != FALSE) {
    DispatchMessageW(&message);
  }
}

void Desk::Do(const std::function<void()>& work) const {
  Task task{work};
  if (task.finished == nullptr) throw Failure{E_OUTOFMEMORY};
  // Posted, not sent: while a thread handles a sent message, it may not call other objects.
  const BOOL posted = PostMessageW(window_, kWork, 0, reinterpret_cast<LPARAM>(&task));
  if (posted != FALSE) WaitForSingleObject(task.finished, INFINITE);
  CloseHandle(task.finished);
  if (posted == FALSE || task.refused) throw Failure{RPC_E_SERVER_DIED};
}

void Desk::End() const { PostMessageW(window_, kEnd, 0, 0); }

void Desk::Work(Task& task) {
  task.refused = ended_;
  if (!task.refused) task.work();
  SetEvent(task.finished);
}

void Desk::Show(HWND dialog) {
  if (ended_) {
    PostMessageW(dialog, WM_CLOSE, 0, 0);
  } else if (IsWindowVisible(dialog) != FALSE) {
    front_.Take(dialog, client_);
  }
}

// The library waits for a login as long as its window is there.
BOOL CALLBACK Desk::EndWait(HWND window, LPARAM /*unused*/) {
  const bool isWaitedFor = IsDialog(window) || HasClass(window, qlx99::kLoginWindow);
  if (isWaitedFor) PostMessageW(window, WM_CLOSE, 0, 0);
  return TRUE;
}

LRESULT CALLBACK Desk::Hear(HWND window, UINT message, WPARAM wordParam, LPARAM longParam) {
  switch (message) {
    case kWork:
      desk->Work(*reinterpret_cast<Task*>(longParam));
      return 0;
    case kShown:
      desk->Show(reinterpret_cast<HWND>(wordParam));
      return 0;
    case kEnd:
      desk->ended_ = true;
      EnumThreadWindows(GetCurrentThreadId(), EndWait, 0);
      return 0;
    default:
      return DefWindowProcW(window, message, wordParam, longParam);
  }
}

// A dialog takes the front once it has come, and not while it comes.
LRESULT CALLBACK Desk::Watch(int code, WPARAM wordParam, LPARAM longParam) {
  auto* const window = reinterpret_cast<HWND>(wordParam);
  if (code == HCBT_ACTIVATE && IsDialog(window)) PostMessageW(desk->window_, kShown, wordParam, 0);
  if (code == HCBT_DESTROYWND) desk->front_.Leave(window);
  return CallNextHookEx(nullptr, code, wordParam, longParam);
}

}  // namespace automation
