#include "frame/dialogs.h"

#include <cstring>

namespace qlx99 {
namespace {

constexpr int kMargin = 4;  // more than a list box leaves before a line, in pixels

// What the list box draws, in pixels.
int WidthOf(HWND dialog, int list, UINT tabStop, const char* text, int length) {
  RECT stop{0, 0, static_cast<LONG>(tabStop), 0};
  MapDialogRect(dialog, &stop);
  const int stopInPixels = stop.right;
  HDC context = GetDC(dialog);
  auto* const font = reinterpret_cast<HGDIOBJ>(SendDlgItemMessageA(dialog, list, WM_GETFONT, 0, 0));
  HGDIOBJ previous = SelectObject(context, font);
  const DWORD extent =
      GetTabbedTextExtentW(context, WideText(text).Get(), length, 1, &stopInPixels);
  SelectObject(context, previous);
  ReleaseDC(dialog, context);
  return LOWORD(extent);
}

}  // namespace

void SetTabStop(HWND dialog, int list, UINT tabStop) {
  SendDlgItemMessageA(dialog, list, LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&tabStop));
}

void ScrollAsFarAs(HWND dialog, int list, UINT tabStop, const char* line) {
  auto length = static_cast<int>(std::strlen(line));
  while (length > 0 && line[length - 1] == '\t') --length;
  const LRESULT needed = kMargin + WidthOf(dialog, list, tabStop, line, length);
  const LRESULT extent = SendDlgItemMessageA(dialog, list, LB_GETHORIZONTALEXTENT, 0, 0);
  if (needed <= extent) return;
  SendDlgItemMessageA(dialog, list, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(needed), 0);
}

LRESULT SelectedLine(HWND dialog, int list) {
  return SendDlgItemMessageA(dialog, list, LB_GETCURSEL, 0, 0);
}

}  // namespace qlx99
