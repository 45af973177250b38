// A program of the office without a will of its own: a window of the class by which the library
// finds it. What other programs send or post there goes on to the test program, which answers.
#include "program.h"

#include "platform/windows_api.h"

namespace {

constexpr const char* kName = WINDOW_CLASS;  // each program is compiled with its own

HWND Director() { return FindWindowA(qlx99::tests::kDirectorClass, kName); }

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wordParam, LPARAM longParam) {
  constexpr UINT kFirstRegistered = 0xC000;
  if (message >= kFirstRegistered) return SendMessageA(Director(), message, wordParam, longParam);
  if (message == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcA(window, message, wordParam, longParam);
}

}  // namespace

int WINAPI WinMain(HINSTANCE program, HINSTANCE /*previous*/, LPSTR /*arguments*/,
                   int showCommand) {
  constexpr DWORD kPatience = 20'000;  // in milliseconds, with a test program that says nothing
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = Procedure;
  windowClass.hInstance = program;
  windowClass.lpszClassName = kName;
  RegisterClassA(&windowClass);
  CreateWindowExA(0, kName, "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, program, nullptr);
  PostMessageA(Director(), RegisterWindowMessageA(qlx99::tests::kStartedMessage),
               static_cast<WPARAM>(showCommand), 0);
  MSG message{};
  while (MsgWaitForMultipleObjects(0, nullptr, FALSE, kPatience, QS_ALLINPUT) == WAIT_OBJECT_0) {
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message == WM_QUIT) return 0;
      DispatchMessageA(&message);
    }
  }
  return 1;
}
