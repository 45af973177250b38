// What tells of the automation server from outside: its processes, and the dialog of a choice.
#pragma once

#include <functional>

#include "platform/windows_api.h"
#include "support/started_program.h"

namespace qlx99::tests {

// Within half a minute.
inline bool Eventually(const std::function<bool()>& isSo) {
  constexpr int kTimes = 3000;
  for (int i = 0; i < kTimes; ++i) {
    if (isSo()) return true;
    Sleep(10);
  }
  return false;
}

inline int CountServers() { return CountRunning("qlx99server.exe"); }

// Null while it is not on the screen.
inline HWND PartyDialog() {
  HWND dialog = FindWindowW(L"#32770", L"Gegner auswählen");
  return IsWindowVisible(dialog) ? dialog : nullptr;
}

}  // namespace qlx99::tests
