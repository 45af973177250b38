// Messages: sent, which waits for the answer, or posted to the queue of the window's thread.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <mutex>
#include <string>

#include "platform/desktop.h"
#include "platform/unsupported.h"
#include "platform/windows_api.h"

namespace {

using platform::MessageQueue;
using platform::QueueOfThisThread;
using platform::SentMessage;
using platform::TheDesktop;
using platform::Unsupported;

using Lock = std::unique_lock<std::mutex>;

// The window's answer, or 0 when it is gone. The lock is open while the window's procedure runs.
LRESULT CallWindow(Lock& lock, const MSG& message) {
  const platform::Window* window = TheDesktop().Find(message.hwnd);
  if (window == nullptr) return 0;
  const WNDPROC procedure = window->procedure;
  lock.unlock();
  const LRESULT answer = procedure(message.hwnd, message.message, message.wParam, message.lParam);
  lock.lock();
  return answer;
}

// Answers what other threads have sent to this thread's windows.
void AnswerSent(Lock& lock, MessageQueue& queue) {
  while (!queue.sent.empty()) {
    SentMessage* sent = queue.sent.front();
    queue.sent.pop_front();
    sent->answer = CallWindow(lock, sent->message);
    sent->isAnswered = true;
    TheDesktop().changed.notify_all();
  }
}

// Hands the message to the window's thread and waits; meanwhile this thread answers what it is
// sent, or two threads that ask each other would wait for ever.
LRESULT AskOtherThread(Lock& lock, MessageQueue& other, const MSG& message) {
  MessageQueue& own = *QueueOfThisThread();
  SentMessage sent{message};
  other.sent.push_back(&sent);
  TheDesktop().changed.notify_all();
  while (!sent.isAnswered) {
    AnswerSent(lock, own);
    TheDesktop().changed.wait(lock, [&] { return sent.isAnswered || !own.sent.empty(); });
  }
  return sent.answer;
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

bool HasMessages(const MessageQueue& queue) {
  return !queue.sent.empty() || !queue.posted.empty() || queue.exitCode;
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
  Lock lock(TheDesktop().mutex);
  const MSG sent{window, message, wordParam, longParam};
  const platform::Window* to = TheDesktop().Find(window);
  if (to == nullptr || to->queue == QueueOfThisThread()) return CallWindow(lock, sent);
  return AskOtherThread(lock, *to->queue, sent);
}

BOOL WINAPI PostMessageA(HWND window, UINT message, WPARAM wordParam, LPARAM longParam) {
  const Lock lock(TheDesktop().mutex);
  const platform::Window* to = TheDesktop().Find(window);
  if (to == nullptr && window != nullptr) return FALSE;
  MessageQueue& queue = to == nullptr ? *QueueOfThisThread() : *to->queue;
  queue.posted.push_back({window, message, wordParam, longParam});
  TheDesktop().changed.notify_all();
  return TRUE;
}

void WINAPI PostQuitMessage(int exitCode) {
  const Lock lock(TheDesktop().mutex);
  QueueOfThisThread()->exitCode = exitCode;
}

BOOL WINAPI PeekMessageA(MSG* message, HWND window, UINT first, UINT last, UINT remove) {
  if (window != nullptr || first != 0 || last != 0 || remove != PM_REMOVE) {
    Unsupported("PeekMessageA", "taking only some messages, or leaving them in the queue");
  }
  Lock lock(TheDesktop().mutex);
  MessageQueue& queue = *QueueOfThisThread();
  AnswerSent(lock, queue);
  if (!Take(queue, message)) return FALSE;
  const HOOKPROC hook = queue.hook;
  lock.unlock();
  if (hook != nullptr) hook(HC_ACTION, remove, reinterpret_cast<LPARAM>(message));
  return TRUE;
}

DWORD WINAPI GetCurrentThreadId() { return static_cast<DWORD>(gettid()); }

HHOOK WINAPI SetWindowsHookExA(int kind, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
  MessageQueue& queue = *QueueOfThisThread();
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
  MessageQueue& queue = *QueueOfThisThread();
  const bool isThere = hook == reinterpret_cast<HHOOK>(&queue) && queue.hook != nullptr;
  if (isThere) queue.hook = nullptr;
  return isThere ? TRUE : FALSE;
}

// There is no keyboard to translate.
BOOL WINAPI TranslateMessage(const MSG* /*message*/) { return FALSE; }

LRESULT WINAPI DispatchMessageA(const MSG* message) {
  Lock lock(TheDesktop().mutex);
  return CallWindow(lock, *message);
}

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

DWORD WINAPI MsgWaitForMultipleObjects(DWORD count, const HANDLE* /*handles*/, BOOL /*waitAll*/,
                                       DWORD milliseconds, DWORD wakeMask) {
  if (count != 0 || wakeMask != QS_ALLINPUT) {
    Unsupported("MsgWaitForMultipleObjects", "waiting for anything but a message");
  }
  Lock lock(TheDesktop().mutex);
  MessageQueue& queue = *QueueOfThisThread();
  queue.isIdle = true;
  TheDesktop().changed.notify_all();
  const bool came = TheDesktop().changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                                  [&] { return HasMessages(queue); });
  return came ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
}
