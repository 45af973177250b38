// The Windows API, as far as this project calls it. On Windows this is <windows.h>; elsewhere the
// same functions under the same names, with the same numbers, are implemented in this folder.
#pragma once

#ifdef _WIN32

#include <windows.h>
// <windows.h> first: these two build on it.
#include <io.h>

#else

#include "platform/windows_types.h"

// The names are Windows' own.
// NOLINTBEGIN(readability-identifier-naming,bugprone-reserved-identifier)

extern "C" {

// --- Errors

inline constexpr DWORD ERROR_SUCCESS = 0;
inline constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
inline constexpr DWORD ERROR_ACCESS_DENIED = 5;
inline constexpr DWORD ERROR_MOD_NOT_FOUND = 126;
inline constexpr DWORD ERROR_BAD_EXE_FORMAT = 193;
inline constexpr DWORD ERROR_MORE_DATA = 234;

// Only LoadLibraryA leaves one here.
DWORD WINAPI GetLastError();

inline constexpr UINT SEM_FAILCRITICALERRORS = 0x0001;
inline constexpr UINT SEM_NOOPENFILEERRORBOX = 0x8000;

UINT WINAPI SetErrorMode(UINT mode);

// --- Registry

// The kind's own cast of a negative number; inline functions cannot be constants of a pointer type.
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<std::uintptr_t>(0x80000002U)))

using REGSAM = DWORD;
using LSTATUS = LONG;
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_WRITE = 0x20006;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_DWORD = 4;
inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;

LSTATUS WINAPI RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD options, REGSAM access, HKEY* result);
LSTATUS WINAPI RegQueryValueExA(HKEY key, LPCSTR valueName, DWORD* reserved, DWORD* type,
                                BYTE* data, DWORD* size);
LSTATUS WINAPI RegCreateKeyExA(HKEY key, LPCSTR subKey, DWORD reserved, LPSTR keyClass,
                               DWORD options, REGSAM access, void* security, HKEY* result,
                               DWORD* disposition);
LSTATUS WINAPI RegSetValueExA(HKEY key, LPCSTR valueName, DWORD reserved, DWORD type,
                              const BYTE* data, DWORD size);
LSTATUS WINAPI RegDeleteValueA(HKEY key, LPCSTR valueName);
LSTATUS WINAPI RegCloseKey(HKEY key);

// --- Libraries

inline constexpr DWORD DLL_PROCESS_DETACH = 0;
inline constexpr DWORD DLL_PROCESS_ATTACH = 1;

inline constexpr DWORD LOAD_WITH_ALTERED_SEARCH_PATH = 0x0008;

HMODULE WINAPI LoadLibraryA(LPCSTR fileName);
// Only by the whole path.
HMODULE WINAPI LoadLibraryExW(LPCWSTR fileName, HANDLE reserved, DWORD flags);
DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD size);
FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name);
BOOL WINAPI FreeLibrary(HMODULE module);
HMODULE WINAPI GetModuleHandleA(LPCSTR fileName);
BOOL WINAPI SetDllDirectoryA(LPCSTR directory);

// --- Programs

// The file must be a library with a WinMain; it runs within this process, where its windows are.
UINT WINAPI WinExec(LPCSTR commandLine, UINT showCommand);
int WINAPI WinMain(HINSTANCE program, HINSTANCE previous, LPSTR arguments, int showCommand);

// --- Files and texts

int _access(const char* path, int mode);
DWORD WINAPI GetCurrentDirectoryW(DWORD size, LPWSTR path);
BOOL WINAPI SetCurrentDirectoryA(LPCSTR path);
BOOL WINAPI SetCurrentDirectoryW(LPCWSTR path);

// Code pages 850, 1252 and 65001 (UTF-8) only. Towards the first two, WC_NO_BEST_FIT_CHARS must be
// asked for: this layer has no table of lookalikes.
inline constexpr UINT CP_UTF8 = 65001;
inline constexpr DWORD MB_ERR_INVALID_CHARS = 0x0008;
inline constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x0400;

int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR source, int sourceLength,
                               LPWSTR destination, int destinationLength);
int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR source, int sourceLength,
                               LPSTR destination, int destinationLength, LPCSTR defaultChar,
                               BOOL* usedDefaultChar);

// --- Message boxes and dialogs

#define MAKEINTRESOURCEW(id) \
  (reinterpret_cast<LPWSTR>(static_cast<std::uintptr_t>(static_cast<WORD>(id))))

constexpr WORD LOWORD(std::uintptr_t value) { return static_cast<WORD>(value & 0xFFFF); }
constexpr WPARAM MAKEWPARAM(WORD low, WORD high) {
  return static_cast<WPARAM>(low) | (static_cast<WPARAM>(high) << 16);
}

inline constexpr UINT MB_OK = 0x0000;
inline constexpr UINT MB_ICONHAND = 0x0010;
inline constexpr UINT MB_SYSTEMMODAL = 0x1000;

inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;

inline constexpr UINT WM_NULL = 0x0000;
inline constexpr UINT WM_CREATE = 0x0001;
inline constexpr UINT WM_DESTROY = 0x0002;
inline constexpr UINT WM_SETTEXT = 0x000C;
inline constexpr UINT WM_CLOSE = 0x0010;
inline constexpr UINT WM_QUIT = 0x0012;
inline constexpr UINT WM_GETFONT = 0x0031;
inline constexpr UINT WM_INITDIALOG = 0x0110;
inline constexpr UINT WM_COMMAND = 0x0111;

inline constexpr DWORD WS_VISIBLE = 0x10000000;
inline constexpr DWORD LBS_NOTIFY = 0x0001;
inline constexpr DWORD LBS_USETABSTOPS = 0x0080;

inline constexpr WORD BN_CLICKED = 0;
inline constexpr WORD LBN_SELCHANGE = 1;
inline constexpr WORD LBN_DBLCLK = 2;

inline constexpr UINT LB_ADDSTRING = 0x0180;
inline constexpr UINT LB_SETCURSEL = 0x0186;
inline constexpr UINT LB_GETCURSEL = 0x0188;
inline constexpr UINT LB_GETTEXT = 0x0189;
inline constexpr UINT LB_SETTABSTOPS = 0x0192;
inline constexpr UINT LB_GETHORIZONTALEXTENT = 0x0193;
inline constexpr UINT LB_SETHORIZONTALEXTENT = 0x0194;
inline constexpr UINT LB_GETITEMDATA = 0x0199;
inline constexpr UINT LB_SETITEMDATA = 0x019A;
inline constexpr LRESULT LB_ERR = -1;

int WINAPI MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR title, UINT style);
INT_PTR WINAPI DialogBoxParamW(HINSTANCE module, LPCWSTR templateName, HWND owner,
                               DLGPROC procedure, LPARAM parameter);
BOOL WINAPI EndDialog(HWND window, INT_PTR result);
LRESULT WINAPI SendDlgItemMessageA(HWND dialog, int id, UINT message, WPARAM wordParam,
                                   LPARAM longParam);
// Only to add a line to a list and to read one.
LRESULT WINAPI SendDlgItemMessageW(HWND dialog, int id, UINT message, WPARAM wordParam,
                                   LPARAM longParam);
BOOL WINAPI SetDlgItemTextW(HWND dialog, int id, LPCWSTR text);

// --- The size of texts in dialogs, whose font has characters of one width here

BOOL WINAPI MapDialogRect(HWND dialog, RECT* rect);
HDC WINAPI GetDC(HWND window);
int WINAPI ReleaseDC(HWND window, HDC context);
HGDIOBJ WINAPI SelectObject(HDC context, HGDIOBJ object);
// With one tab stop, in pixels, which stands for all its multiples. Width in the low word.
DWORD WINAPI GetTabbedTextExtentW(HDC context, LPCWSTR text, int length, int tabStopCount,
                                  const int* tabStops);

// --- Windows and their messages

inline constexpr UINT CS_HREDRAW = 0x0002;
inline constexpr DWORD WS_MINIMIZEBOX = 0x00020000;
inline constexpr DWORD WS_THICKFRAME = 0x00040000;
inline constexpr DWORD WS_SYSMENU = 0x00080000;
inline constexpr DWORD WS_CAPTION = 0x00C00000;
inline constexpr DWORD WS_CHILD = 0x40000000;
inline constexpr DWORD WS_POPUP = 0x80000000;
inline constexpr int CW_USEDEFAULT = static_cast<int>(0x80000000);
inline constexpr int SW_HIDE = 0;
inline constexpr int SW_SHOW = 5;
inline constexpr int SW_MINIMIZE = 6;
inline constexpr int GWLP_WNDPROC = -4;
inline constexpr int DWLP_USER = sizeof(LRESULT) + sizeof(DLGPROC);  // of dialogs
inline constexpr int WHITE_BRUSH = 0;
inline constexpr UINT PM_REMOVE = 0x0001;
inline constexpr int WH_GETMESSAGE = 3;
inline constexpr int HC_ACTION = 0;
inline constexpr DWORD QS_ALLINPUT = 0x04FF;
inline constexpr DWORD WAIT_OBJECT_0 = 0;
inline constexpr DWORD WAIT_TIMEOUT = 258;

struct WNDCLASSA {
  UINT style;
  WNDPROC lpfnWndProc;
  int cbClsExtra;
  int cbWndExtra;
  HINSTANCE hInstance;
  HICON hIcon;
  HCURSOR hCursor;
  HBRUSH hbrBackground;
  LPCSTR lpszMenuName;
  LPCSTR lpszClassName;
};

// Without the time and the mouse, which nobody here asks for.
struct MSG {
  HWND hwnd;
  UINT message;
  WPARAM wParam;
  LPARAM lParam;
};

ATOM WINAPI RegisterClassA(const WNDCLASSA* windowClass);
BOOL WINAPI UnregisterClassA(LPCSTR className, HINSTANCE module);
BOOL WINAPI GetClassInfoA(HINSTANCE module, LPCSTR className, WNDCLASSA* windowClass);
// WM_CREATE comes without a CREATESTRUCT.
HWND WINAPI CreateWindowExA(DWORD extendedStyle, LPCSTR className, LPCSTR title, DWORD style, int x,
                            int y, int width, int height, HWND owner, HMENU menu, HINSTANCE module,
                            void* parameter);
BOOL WINAPI DestroyWindow(HWND window);
BOOL WINAPI IsWindow(HWND window);
HWND WINAPI FindWindowA(LPCSTR className, LPCSTR title);
BOOL WINAPI ShowWindow(HWND window, int command);
LONG_PTR WINAPI GetWindowLongPtrA(HWND window, int index);
LONG_PTR WINAPI SetWindowLongPtrA(HWND window, int index, LONG_PTR value);
BOOL WINAPI SetWindowTextW(HWND window, LPCWSTR text);
LRESULT WINAPI DefWindowProcA(HWND window, UINT message, WPARAM wordParam, LPARAM longParam);
HGDIOBJ WINAPI GetStockObject(int object);

UINT WINAPI RegisterWindowMessageA(LPCSTR name);
LRESULT WINAPI SendMessageA(HWND window, UINT message, WPARAM wordParam, LPARAM longParam);
BOOL WINAPI PostMessageA(HWND window, UINT message, WPARAM wordParam, LPARAM longParam);
void WINAPI PostQuitMessage(int exitCode);
BOOL WINAPI PeekMessageA(MSG* message, HWND window, UINT first, UINT last, UINT remove);
DWORD WINAPI GetCurrentThreadId();
// One hook for each thread, of its own, which sees what PeekMessageA takes.
HHOOK WINAPI SetWindowsHookExA(int kind, HOOKPROC procedure, HINSTANCE module, DWORD thread);
LRESULT WINAPI CallNextHookEx(HHOOK hook, int code, WPARAM wordParam, LPARAM longParam);
BOOL WINAPI UnhookWindowsHookEx(HHOOK hook);
BOOL WINAPI TranslateMessage(const MSG* message);
LRESULT WINAPI DispatchMessageA(const MSG* message);
DWORD WINAPI MsgWaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL waitAll,
                                       DWORD milliseconds, DWORD wakeMask);

}  // extern "C"

// The entry point of the library that this layer is linked into; called when a process loads and
// frees it. Hidden, so that each of several libraries in a process keeps its own.
extern "C" [[gnu::visibility("hidden")]] BOOL WINAPI DllMain(HINSTANCE module, DWORD reason,
                                                             LPVOID reserved);

// NOLINTEND(readability-identifier-naming,bugprone-reserved-identifier)

#endif
