// Windows and their messages.
#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>
#include <string>

#include "platform/dialog.h"
#include "platform/windows_api.h"

namespace {

struct MessageNames {
  std::mutex mutex;
  std::map<std::string, UINT> numbers;
};

MessageNames& Names() {
  static auto& names = *new MessageNames;
  return names;
}

}  // namespace

BOOL WINAPI SetWindowTextA(HWND window, LPCSTR text) {
  platform::Dialog* dialog = platform::DialogOf(window);
  if (dialog == nullptr) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return FALSE;
  }
  dialog->SetTitle(text);
  return TRUE;
}

UINT WINAPI RegisterWindowMessageA(LPCSTR name) {
  constexpr UINT kFirst = 0xC000;
  constexpr UINT kLast = 0xFFFF;
  std::string key = name == nullptr ? "" : name;
  CharUpperBuffA(key.data(), static_cast<DWORD>(key.size()));
  MessageNames& names = Names();
  const std::lock_guard lock(names.mutex);
  const UINT next = kFirst + static_cast<UINT>(names.numbers.size());
  if (key.empty() || next > kLast) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  return names.numbers.try_emplace(key, next).first->second;
}

LRESULT WINAPI DefWindowProcA(HWND window, UINT message, WPARAM /*wordParam*/, LPARAM longParam) {
  if (message == WM_SETTEXT) {
    return SetWindowTextA(window, reinterpret_cast<LPCSTR>(longParam));
  }
  return 0;
}
