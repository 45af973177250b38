#include "platform/desktop.h"
#include "platform/recoding.h"
#include "platform/screen.h"
#include "platform/unsupported.h"

int WINAPI MessageBoxW(HWND /*owner*/, LPCWSTR text, LPCWSTR title, UINT style) {
  constexpr UINT kButtons = 0x000F;
  if ((style & kButtons) != MB_OK) {
    platform::Unsupported("MessageBoxW", "a message box with other buttons than OK");
  }
  if (!platform::DispatchInModalLoop()) return IDOK;
  const char* defaultTitle = "Error";
  return platform::CurrentScreen().ShowMessage(
      {platform::AnsiText(text), title == nullptr ? defaultTitle : platform::AnsiText(title),
       style});
}
