// The inquiry program of the tests, which only says that it was started and how it is to show
// itself.
#include "platform/windows_api.h"

int WINAPI WinMain(HINSTANCE /*program*/, HINSTANCE /*previous*/, LPSTR /*arguments*/,
                   int showCommand) {
  PostMessageA(FindWindowA("qlx99 tests", nullptr), RegisterWindowMessageA("started"),
               static_cast<WPARAM>(showCommand), 0);
  return 0;
}
