// The login server of the delegated kind, and the user at the login mask, while the exports are
// fuzzed.
#pragma once

#include <filesystem>
#include <iterator>

#include "frame/login_window.h"
#include "fuzz/input.h"
#include "platform/windows_api.h"

namespace fuzz {

// Both do what the input says, and at last the mask is closed.
class LoginServer {
 public:
  explicit LoginServer(Input& input) {
    current = &input;
    qlx99::CreateLoginWindow();
    if (input.OneIn(4)) {
      Report(qlx99::LoginState::kCancelled);
      return;
    }
    WNDCLASSA its{};
    its.lpfnWndProc = Answer;
    its.hInstance = GetModuleHandleA(nullptr);
    its.lpszClassName = kName;
    RegisterClassA(&its);
    window_ = CreateWindowExA(0, kName, "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, its.hInstance,
                              nullptr);
  }
  ~LoginServer() {
    if (window_ != nullptr) DestroyWindow(window_);
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
    std::filesystem::current_path(folder_);  // out of the sibling library's
  }
  LoginServer(const LoginServer&) = delete;
  LoginServer& operator=(const LoginServer&) = delete;

 private:
  static constexpr const char* kName = "KRVLOGSRV32";

  static void Report(qlx99::LoginState state) {
    PostMessageA(FindWindowA("KrvQLX", nullptr), RegisterWindowMessageA("WM_KRV_LOGINMASK"),
                 static_cast<WPARAM>(state), 0);
  }

  static void UseMask() {
    if (current->OneIn(4)) Report(static_cast<qlx99::LoginState>(current->Byte()));
    Report(current->OneIn(2) ? qlx99::LoginState::kCancelled : qlx99::LoginState::kLoggedIn);
  }

  static LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM wordParam, LPARAM longParam) {
    constexpr UINT kFirstRegistered = 0xC000;
    constexpr LRESULT kAnswers[] = {8, 1, 0, 3};  // the first is the product that it should be
    if (message < kFirstRegistered) return DefWindowProcA(window, message, wordParam, longParam);
    // Who is not logged in yet is waited for.
    if (message == RegisterWindowMessageA("WM_ISLOGGEDIN") || current->OneIn(4)) UseMask();
    if (current->IsSpent()) Report(qlx99::LoginState::kCancelled);
    return kAnswers[current->Choice(std::size(kAnswers))];
  }

  static inline Input* current = nullptr;
  HWND window_ = nullptr;
  std::filesystem::path folder_ = std::filesystem::current_path();
};

}  // namespace fuzz
