#include "frame/host_messages.h"

namespace qlx99 {

HostMessages::~HostMessages() {
  if (quitTaken_) PostQuitMessage(exitCode_);
}

void HostMessages::Dispatch() {
  MSG message{};
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      quitTaken_ = true;
      exitCode_ = static_cast<int>(message.wParam);
      return;
    }
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
}

void HostMessages::Await() {
  constexpr DWORD kMilliseconds = 10;
  MsgWaitForMultipleObjects(0, nullptr, FALSE, kMilliseconds, QS_ALLINPUT);
}

}  // namespace qlx99
