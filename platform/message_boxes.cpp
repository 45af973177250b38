#include "platform/screen.h"
#include "platform/unsupported.h"

int WINAPI MessageBoxA(HWND /*owner*/, LPCSTR text, LPCSTR title, UINT style) {
  constexpr UINT kButtons = 0x000F;
  if ((style & kButtons) != MB_OK) {
    platform::Unsupported("MessageBoxA", "a message box with other buttons than OK");
  }
  const char* defaultTitle = "Error";
  return platform::CurrentScreen().ShowMessage(
      {text == nullptr ? "" : text, title == nullptr ? defaultTitle : title, style});
}
