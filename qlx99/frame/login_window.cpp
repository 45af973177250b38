#include "frame/login_window.h"

#include "frame/exports.h"

namespace qlx99 {
namespace {

struct LoginAnswer {
  LoginState state = LoginState::kNoAnswer;
};

LoginAnswer loginAnswer;

// Registered under the same name by all processes of the office, which so agree on its number.
UINT LoginMaskMessage() { return RegisterWindowMessageA("WM_KRV_LOGINMASK"); }

}  // namespace

LoginState CurrentLoginState() { return loginAnswer.state; }

void SetLoginState(LoginState state) { loginAnswer.state = state; }

LRESULT CALLBACK MainWndProc(HWND window, UINT message, WPARAM wordParam, LPARAM longParam) {
  if (message == LoginMaskMessage()) {
    SetLoginState(static_cast<LoginState>(wordParam));
    return 0;
  }
  if (message == WM_CREATE || message == WM_DESTROY) return 0;
  return DefWindowProcA(window, message, wordParam, longParam);
}

}  // namespace qlx99
