// Windows: their classes, their lives, and what can be asked about them.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/desktop.h"
#include "platform/dialog.h"
#include "platform/unsupported.h"
#include "platform/windows_api.h"

namespace {

using platform::Desktop;
using platform::TheDesktop;
using platform::Unsupported;
using platform::UpperCase;
using platform::Window;

using Lock = std::lock_guard<std::mutex>;

HWND Add(Window window) {
  constexpr std::uintptr_t kFirst = 0x10000;  // no handle looks like a small number
  Desktop& desktop = TheDesktop();
  auto* handle = reinterpret_cast<HWND>(kFirst + 2 * ++desktop.lastHandle);
  desktop.windows.emplace(handle, std::move(window));
  return handle;
}

std::vector<HWND> OwnedBy(HWND owner) {
  const Lock lock(TheDesktop().mutex);
  std::vector<HWND> owned;
  for (const auto& [handle, window] : TheDesktop().windows) {
    if (window.owner == owner) owned.push_back(handle);
  }
  return owned;
}

}  // namespace

ATOM WINAPI RegisterClassA(const WNDCLASSA* windowClass) {
  Desktop& desktop = TheDesktop();
  const Lock lock(desktop.mutex);
  const auto [place, isNew] = desktop.classes.try_emplace(
      {windowClass->hInstance, UpperCase(windowClass->lpszClassName)}, *windowClass);
  if (!isNew) return 0;
  place->second.lpszClassName = nullptr;  // the caller's
  return static_cast<ATOM>(0xC000 + desktop.classes.size());
}

BOOL WINAPI UnregisterClassA(LPCSTR className, HINSTANCE module) {
  Desktop& desktop = TheDesktop();
  const Lock lock(desktop.mutex);
  const auto found = desktop.classes.find({module, UpperCase(className)});
  if (found == desktop.classes.end()) return FALSE;
  const bool hasWindows = std::ranges::any_of(
      desktop.windows, [&](const auto& one) { return one.second.windowClass == found->first; });
  if (hasWindows) return FALSE;
  desktop.classes.erase(found);
  return TRUE;
}

BOOL WINAPI GetClassInfoA(HINSTANCE module, LPCSTR className, WNDCLASSA* windowClass) {
  const Lock lock(TheDesktop().mutex);
  const auto found = TheDesktop().classes.find({module, UpperCase(className)});
  if (found == TheDesktop().classes.end()) return FALSE;
  *windowClass = found->second;
  windowClass->lpszClassName = className;
  return TRUE;
}

HWND WINAPI CreateWindowExA(DWORD extendedStyle, LPCSTR className, LPCSTR title, DWORD style,
                            int /*x*/, int /*y*/, int /*width*/, int /*height*/, HWND owner,
                            HMENU menu, HINSTANCE module, void* /*parameter*/) {
  if (extendedStyle != 0 || (style & WS_CHILD) != 0 || menu != nullptr) {
    Unsupported("CreateWindowExA", "a window with an extended style, a parent or a menu");
  }
  HWND handle = nullptr;
  {
    const Lock lock(TheDesktop().mutex);
    const auto found = TheDesktop().classes.find({module, UpperCase(className)});
    if (found == TheDesktop().classes.end()) return nullptr;
    handle = Add({found->first, found->second.lpfnWndProc, title == nullptr ? "" : title, owner,
                  &platform::QueueOfThisThread()});
  }
  SendMessageA(handle, WM_CREATE, 0, 0);
  return handle;
}

BOOL WINAPI DestroyWindow(HWND window) {
  {
    const Lock lock(TheDesktop().mutex);
    const Window* found = TheDesktop().Find(window);
    if (found == nullptr || found->queue != &platform::QueueOfThisThread()) return FALSE;
  }
  for (HWND owned : OwnedBy(window)) DestroyWindow(owned);
  SendMessageA(window, WM_DESTROY, 0, 0);
  const Lock lock(TheDesktop().mutex);
  TheDesktop().windows.erase(window);
  return TRUE;
}

BOOL WINAPI IsWindow(HWND window) {
  const Lock lock(TheDesktop().mutex);
  return TheDesktop().Find(window) != nullptr ? TRUE : FALSE;
}

HWND WINAPI FindWindowA(LPCSTR className, LPCSTR title) {
  const std::string name = UpperCase(className);
  const std::string text = UpperCase(title);
  const Lock lock(TheDesktop().mutex);
  for (const auto& [handle, window] : TheDesktop().windows) {
    const bool isOfClass = className == nullptr || window.windowClass.second == name;
    const bool hasTitle = title == nullptr || UpperCase(window.title.c_str()) == text;
    if (isOfClass && hasTitle) return handle;
  }
  return nullptr;
}

// There is no screen on which they would show.
BOOL WINAPI ShowWindow(HWND /*window*/, int /*command*/) { return FALSE; }

LONG_PTR WINAPI SetWindowLongPtrA(HWND window, int index, LONG_PTR value) {
  platform::Dialog* dialog = platform::DialogOf(window);
  if (index == DWLP_USER && dialog != nullptr) return std::exchange(dialog->UserWord(), value);
  const Lock lock(TheDesktop().mutex);
  Window* found = TheDesktop().Find(window);
  if (found == nullptr) return 0;
  if (index != GWLP_WNDPROC) Unsupported("SetWindowLongPtrA", "anything but a procedure");
  return reinterpret_cast<LONG_PTR>(
      std::exchange(found->procedure, reinterpret_cast<WNDPROC>(value)));
}

LRESULT WINAPI DefWindowProcA(HWND window, UINT message, WPARAM /*wordParam*/, LPARAM longParam) {
  if (message == WM_CLOSE) DestroyWindow(window);
  if (message != WM_SETTEXT) return 0;
  const Lock lock(TheDesktop().mutex);
  Window* found = TheDesktop().Find(window);
  if (found != nullptr) found->title = reinterpret_cast<LPCSTR>(longParam);
  return 0;
}

// Nothing is ever painted, so the brush only has to be told from others.
HGDIOBJ WINAPI GetStockObject(int object) {
  if (object != WHITE_BRUSH) Unsupported("GetStockObject", std::to_string(object));
  static char whiteBrush = 0;
  return &whiteBrush;
}
