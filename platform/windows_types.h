// The types of the Windows API for hosts that lack them, with the sizes that Windows gives them.
#pragma once

#include <cstddef>
#include <cstdint>

// The names are Windows' own.
// NOLINTBEGIN(readability-identifier-naming,bugprone-reserved-identifier)

// Calling conventions; the host has one.
#define WINAPI
#define CALLBACK
#define APIENTRY

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using ULONG = std::uint32_t;
using LONG = std::int32_t;
using UINT = std::uint32_t;
using BOOL = int;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using INT_PTR = std::intptr_t;
using LONG_PTR = std::intptr_t;
using LPVOID = void*;
using LPCSTR = const char*;
using LPSTR = char*;
using WCHAR = char16_t;
using LPCWSTR = const WCHAR*;
using LPWSTR = WCHAR*;

struct HINSTANCE__;
struct HWND__;
struct HKEY__;
struct HMENU__;
struct HDC__;
struct HICON__;
struct HBRUSH__;
struct HHOOK__;
using HINSTANCE = HINSTANCE__*;
using HMODULE = HINSTANCE;
using HWND = HWND__*;
using HKEY = HKEY__*;
using HMENU = HMENU__*;
using HDC = HDC__*;
using HICON = HICON__*;
using HCURSOR = HICON;
using HBRUSH = HBRUSH__*;
using HHOOK = HHOOK__*;
using HGDIOBJ = void*;
using HANDLE = void*;
using ATOM = WORD;
using FARPROC = INT_PTR (*)();
using WNDPROC = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);
using HOOKPROC = LRESULT(CALLBACK*)(int, WPARAM, LPARAM);
using DLGPROC = INT_PTR(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);

struct RECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};

inline constexpr BOOL TRUE = 1;
inline constexpr BOOL FALSE = 0;

// NOLINTEND(readability-identifier-naming,bugprone-reserved-identifier)
