// Messages: sent, which calls the window's procedure, or posted to the queue of its thread.
#include <unistd.h>

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include "platform/desktop.h"
#include "platform/unsupported.h"
#include "platform/windows_api.h"

namespace {

using platform::MessageQueue;
using platform::QueueOfThisThread;
using platform::TheDesktop;
using platform::Unsupported;

using Lock = std::lock_guard<std::mutex>;

// The window's answer, or 0 when it is gone.
LRESULT CallWindow(const MSG& message) {
  WNDPROC procedure = nullptr;
  {
    const Lock lock(TheDesktop().mutex);
    const platform::Window* window = TheDesktop().Find(message.hwnd);
    if (window == nullptr) return 0;
    if (window->queue != &QueueOfThisThread()) {
      Unsupported("SendMessageA", "asking the window of another thread");
    }
    procedure = window->procedure;
  }
  return procedure(message.hwnd, message.message, message.wParam, message.lParam);
}

bool Take(MessageQueue& queue, MSG* message) {
  if (!queue.posted.empty()) {
    *message = queue.posted.front();
    queue.posted.pop_front();
    return true;
  }
  if (!queue.exitCode) return false;
  *message = {nullptr, WM_QUIT, static_cast<WPARAM>(*queue.exitCode), 0};
  queue.exitCode.reset();
  return true;
}

}  // namespace

UINT WINAPI RegisterWindowMessageA(LPCSTR name) {
  constexpr UINT kFirst = 0xC000;
  static auto& numbers = *new std::map<std::string, UINT>;
  const std::string key = platform::UpperCase(name);
  const std::lock_guard lock(TheDesktop().mutex);
  const UINT next = kFirst + static_cast<UINT>(numbers.size());
  return numbers.try_emplace(key, next).first->second;
}

LRESULT WINAPI SendMessageA(HWND window, UINT message, WPARAM wordParam, LPARAM longParam) {
  return CallWindow({window, message, wordParam, longParam});
}

BOOL WINAPI PostMessageA(HWND window, UINT message, WPARAM wordParam, LPARAM longParam) {
  const Lock lock(TheDesktop().mutex);
  const platform::Window* to = TheDesktop().Find(window);
  if (to == nullptr && window != nullptr) return FALSE;
  MessageQueue& queue = to == nullptr ? QueueOfThisThread() : *to->queue;
  queue.posted.push_back({window, message, wordParam, longParam});
  return TRUE;
}

void WINAPI PostQuitMessage(int exitCode) {
  const Lock lock(TheDesktop().mutex);
  QueueOfThisThread().exitCode = exitCode;
}

BOOL WINAPI PeekMessageA(MSG* message, HWND window, UINT first, UINT last, UINT remove) {
  if (window != nullptr || first != 0 || last != 0 || remove != PM_REMOVE) {
    Unsupported("PeekMessageA", "taking only some messages, or leaving them in the queue");
  }
  MessageQueue& queue = QueueOfThisThread();
  {
    const Lock lock(TheDesktop().mutex);
    if (!Take(queue, message)) return FALSE;
  }
  const HOOKPROC hook = queue.hook;
  if (hook != nullptr) hook(HC_ACTION, remove, reinterpret_cast<LPARAM>(message));
  return TRUE;
}

DWORD WINAPI GetCurrentThreadId() { return static_cast<DWORD>(gettid()); }

HHOOK WINAPI SetWindowsHookExA(int kind, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
  MessageQueue& queue = QueueOfThisThread();
  if (kind != WH_GETMESSAGE || module != nullptr || thread != GetCurrentThreadId() ||
      queue.hook != nullptr) {
    Unsupported("SetWindowsHookExA", "anything but one hook of WH_GETMESSAGE for this thread");
  }
  queue.hook = procedure;
  return reinterpret_cast<HHOOK>(&queue);
}

LRESULT WINAPI CallNextHookEx(HHOOK /*hook*/, int /*code*/, WPARAM /*wordParam*/,
                              LPARAM /*longParam*/) {
  return 0;
}

BOOL WINAPI UnhookWindowsHookEx(HHOOK hook) {
  MessageQueue& queue = QueueOfThisThread();
  const bool isThere = hook == reinterpret_cast<HHOOK>(&queue) && queue.hook != nullptr;
  if (isThere) queue.hook = nullptr;
  return isThere ? TRUE : FALSE;
}

// There is no keyboard to translate.
BOOL WINAPI TranslateMessage(const MSG* /*message*/) { return FALSE; }

LRESULT WINAPI DispatchMessageA(const MSG* message) { return CallWindow(*message); }

bool platform::DispatchInModalLoop() {
  MSG message{};
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      return false;
    }
    DispatchMessageA(&message);
  }
  return true;
}

// It waits the whole time: nobody else posts this thread anything meanwhile.
DWORD WINAPI MsgWaitForMultipleObjects(DWORD count, const HANDLE* /*handles*/, BOOL /*waitAll*/,
                                       DWORD milliseconds, DWORD wakeMask) {
  if (count != 0 || wakeMask != QS_ALLINPUT) {
    Unsupported("MsgWaitForMultipleObjects", "waiting for anything but a message");
  }
  {
    const MessageQueue& queue = QueueOfThisThread();
    const Lock lock(TheDesktop().mutex);
    if (!queue.posted.empty() || queue.exitCode) return WAIT_OBJECT_0;
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
  return WAIT_TIMEOUT;
}
