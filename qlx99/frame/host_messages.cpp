#include "frame/host_messages.h"

namespace qlx99 {
namespace {

struct Held {
  int holders = 0;
  HHOOK hook = nullptr;
  int quits = 0;  // taken so far
  int exitCode = 0;
};

Held held;

void Hold(MSG& quit) {
  quit.message = WM_NULL;
  ++held.quits;
  held.exitCode = static_cast<int>(quit.wParam);
}

// Windows calls it with each message that is taken from the thread's queue, before the taker sees
// it.
LRESULT CALLBACK HoldQuit(int code, WPARAM removal, LPARAM longParam) {
  auto& message = *reinterpret_cast<MSG*>(longParam);
  const bool isTaken = code == HC_ACTION && (removal & PM_REMOVE) != 0;
  if (isTaken && message.message == WM_QUIT) Hold(message);
  return CallNextHookEx(nullptr, code, removal, longParam);
}

}  // namespace

HeldQuit::HeldQuit() {
  if (++held.holders > 1) return;
  held.quits = 0;
  held.hook = SetWindowsHookExA(WH_GETMESSAGE, HoldQuit, nullptr, GetCurrentThreadId());
}

HeldQuit::~HeldQuit() {
  if (--held.holders > 0) return;
  UnhookWindowsHookEx(held.hook);
  if (held.quits > 0) PostQuitMessage(held.exitCode);
}

void DispatchHostMessages() {
  MSG message{};
  const int before = held.quits;
  while (held.quits == before && PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) Hold(message);  // without a hook
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
}

void AwaitHostMessage() {
  constexpr DWORD kMilliseconds = 10;
  MsgWaitForMultipleObjects(0, nullptr, FALSE, kMilliseconds, QS_ALLINPUT);
}

}  // namespace qlx99
