#include "frame/login_window.h"

#include "frame/attach.h"
#include "frame/exports.h"

namespace qlx99 {
namespace {

struct LoginWindow {
  HWND window = nullptr;
  LoginState state = LoginState::kNoAnswer;
};

LoginWindow loginWindow;

// False when the class cannot be registered with our procedure: a window with another one would be
// worse than none.
bool RegisterWindowClass() {
  WNDCLASSA known{};
  if (GetClassInfoA(CurrentAttachment().module, kLoginWindow, &known)) {
    if (known.lpfnWndProc == MainWndProc) return true;
    UnregisterClassA(kLoginWindow, CurrentAttachment().module);  // left by an earlier library
  }
  WNDCLASSA hidden{};
  hidden.style = CS_HREDRAW;
  hidden.lpfnWndProc = MainWndProc;
  hidden.hInstance = CurrentAttachment().module;
  hidden.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  hidden.lpszClassName = kLoginWindow;
  return RegisterClassA(&hidden) != 0;
}

}  // namespace

LoginState CurrentLoginState() { return loginWindow.state; }

void SetLoginState(LoginState state) { loginWindow.state = state; }

void CreateLoginWindow() {
  // It is destroyed together with its owner, the word processor's window.
  if (IsWindow(loginWindow.window)) return;
  constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX;
  constexpr int kWidth = 700;
  constexpr int kHeight = 350;
  if (!RegisterWindowClass()) return;
  HWND owner = FindWindowA("OpusApp", nullptr);
  loginWindow.window =
      CreateWindowExA(0, kLoginWindow, kLoginWindow, kStyle, CW_USEDEFAULT, CW_USEDEFAULT, kWidth,
                      kHeight, owner, nullptr, CurrentAttachment().module, nullptr);
  ShowWindow(loginWindow.window, SW_HIDE);
}

bool LoginWindowHasGone() { return loginWindow.window != nullptr && !IsWindow(loginWindow.window); }

void DestroyLoginWindow() {
  if (loginWindow.window != nullptr && DestroyWindow(loginWindow.window)) {
    loginWindow.window = nullptr;
  }
}

void DisownLoginWindow() {
  if (IsWindow(loginWindow.window)) {
    // It belongs to another thread. Only that thread can destroy it, and WM_CLOSE makes it do so.
    // We do not wait for it: it may itself be waiting for us, to load a library.
    SetWindowLongPtrA(loginWindow.window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(DefWindowProcA));
    PostMessageA(loginWindow.window, WM_CLOSE, 0, 0);
  }
  // The class would outlive the library and lead to code that is gone.
  UnregisterClassA(kLoginWindow, CurrentAttachment().module);
}

LRESULT CALLBACK MainWndProc(HWND window, UINT message, WPARAM wordParam, LPARAM longParam) {
  // The login side registers the same name, and so both have the same number.
  if (message == RegisterWindowMessageA("WM_KRV_LOGINMASK")) {
    SetLoginState(static_cast<LoginState>(wordParam));
    return 0;
  }
  if (message == WM_CREATE || message == WM_DESTROY) return 0;
  return DefWindowProcA(window, message, wordParam, longParam);
}

}  // namespace qlx99
