#include "frame/login_window.h"

#include <utility>

#include "frame/attach.h"
#include "frame/exports.h"

namespace qlx99 {
namespace {

constexpr const char* kName = "KrvQLX";  // the window's class and title

struct LoginWindow {
  HWND window = nullptr;
  LoginState state = LoginState::kNoAnswer;
};

LoginWindow loginWindow;

void RegisterWindowClass() {
  WNDCLASSA known{};
  if (GetClassInfoA(CurrentAttachment().module, kName, &known)) return;
  WNDCLASSA hidden{};
  hidden.style = CS_HREDRAW;
  hidden.lpfnWndProc = MainWndProc;
  hidden.hInstance = CurrentAttachment().module;
  hidden.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  hidden.lpszClassName = kName;
  RegisterClassA(&hidden);
}

}  // namespace

LoginState CurrentLoginState() { return loginWindow.state; }

void SetLoginState(LoginState state) { loginWindow.state = state; }

void CreateLoginWindow() {
  // It is gone together with its owner, when the word processor has closed that window.
  if (IsWindow(loginWindow.window)) return;
  constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX;
  constexpr int kWidth = 700;
  constexpr int kHeight = 350;
  RegisterWindowClass();
  HWND owner = FindWindowA("OpusApp", nullptr);
  loginWindow.window =
      CreateWindowExA(0, kName, kName, kStyle, CW_USEDEFAULT, CW_USEDEFAULT, kWidth, kHeight, owner,
                      nullptr, CurrentAttachment().module, nullptr);
  ShowWindow(loginWindow.window, SW_HIDE);
}

void DestroyLoginWindow() {
  if (loginWindow.window == nullptr) return;
  DestroyWindow(std::exchange(loginWindow.window, nullptr));
  // The class would outlive the library and, for the next one loaded, stand for code that is gone.
  UnregisterClassA(kName, CurrentAttachment().module);
}

LRESULT CALLBACK MainWndProc(HWND window, UINT message, WPARAM wordParam, LPARAM longParam) {
  // The login side registers the same name, so that both have the same number.
  if (message == RegisterWindowMessageA("WM_KRV_LOGINMASK")) {
    SetLoginState(static_cast<LoginState>(wordParam));
    return 0;
  }
  if (message == WM_CREATE || message == WM_DESTROY) return 0;
  return DefWindowProcA(window, message, wordParam, longParam);
}

}  // namespace qlx99
