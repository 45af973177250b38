// Dialog boxes and message boxes, and what the procedures of dialogs do to their controls.
#include <algorithm>
#include <cstdint>
#include <string>

#include "platform/desktop.h"
#include "platform/dialog.h"
#include "platform/recoding.h"
#include "platform/resources.h"
#include "platform/screen.h"
#include "platform/unsupported.h"

namespace {

using platform::Control;
using platform::Dialog;
using platform::DialogOf;
using platform::Unsupported;

// Null when there is no such dialog or control.
Control* FindControl(HWND window, int id) {
  Dialog* dialog = DialogOf(window);
  return dialog == nullptr ? nullptr : dialog->FindControl(id);
}

LRESULT Select(Control& list, int index) {
  const bool isThere = list.HasLine(static_cast<WPARAM>(index));
  list.selected = isThere ? index : -1;
  return list.selected;
}

LRESULT SetTabStops(Control& list, WPARAM count, LPARAM stops) {
  if (count != 1) Unsupported("LB_SETTABSTOPS", "another number of stops than one");
  if ((list.style & LBS_USETABSTOPS) == 0) return FALSE;
  list.tabStop = *reinterpret_cast<const int*>(stops);
  return TRUE;
}

LRESULT SetData(Control& list, WPARAM index, LPARAM data) {
  if (!list.HasLine(index)) return LB_ERR;
  list.lines[index].data = data;
  return TRUE;
}

}  // namespace

INT_PTR WINAPI DialogBoxParamW(HINSTANCE module, LPCWSTR templateName, HWND /*owner*/,
                               DLGPROC procedure, LPARAM parameter) {
  constexpr WORD kDialogResource = 5;  // RT_DIALOG
  const auto id = static_cast<WORD>(reinterpret_cast<std::uintptr_t>(templateName));
  const auto form =
      platform::ParseDialogTemplate(platform::FindResourceOf(module, kDialogResource, id));
  return !form ? -1 : Dialog(*form, procedure).Run(parameter, platform::CurrentScreen());
}

BOOL WINAPI EndDialog(HWND window, INT_PTR result) {
  Dialog* dialog = DialogOf(window);
  if (dialog == nullptr) return FALSE;
  dialog->End(result);
  return TRUE;
}

LRESULT WINAPI SendDlgItemMessageA(HWND dialog, int id, UINT message, WPARAM wordParam,
                                   LPARAM longParam) {
  Control* list = FindControl(dialog, id);
  if (list == nullptr) return 0;
  switch (message) {
    case WM_GETFONT:
      return reinterpret_cast<LRESULT>(platform::DialogFont());
    case LB_SETCURSEL:
      return Select(*list, static_cast<int>(wordParam));
    case LB_GETCURSEL:
      return list->selected;
    case LB_SETTABSTOPS:
      return SetTabStops(*list, wordParam, longParam);
    case LB_GETHORIZONTALEXTENT:
      return list->horizontalExtent;
    case LB_SETHORIZONTALEXTENT:
      list->horizontalExtent = static_cast<int>(wordParam);
      return 0;
    case LB_GETITEMDATA:
      return list->HasLine(wordParam) ? list->lines[wordParam].data : LB_ERR;
    case LB_SETITEMDATA:
      return SetData(*list, wordParam, longParam);
    default:
      Unsupported("SendDlgItemMessageA", "message " + std::to_string(message));
  }
}

LRESULT WINAPI SendDlgItemMessageW(HWND dialog, int id, UINT message, WPARAM wordParam,
                                   LPARAM longParam) {
  Control* list = FindControl(dialog, id);
  if (list == nullptr) return 0;
  if (message == LB_ADDSTRING) {
    list->lines.push_back({platform::AnsiText(reinterpret_cast<LPCWSTR>(longParam))});
    return static_cast<LRESULT>(list->lines.size() - 1);
  }
  if (message != LB_GETTEXT) {
    Unsupported("SendDlgItemMessageW", "message " + std::to_string(message));
  }
  if (!list->HasLine(wordParam)) return LB_ERR;
  const std::u16string line = platform::WideOfAnsi(list->lines[wordParam].text);
  std::copy_n(line.c_str(), line.size() + 1, reinterpret_cast<WCHAR*>(longParam));
  return static_cast<LRESULT>(line.size());
}

BOOL WINAPI SetDlgItemTextW(HWND dialog, int id, LPCWSTR text) {
  Control* control = FindControl(dialog, id);
  if (control == nullptr) return FALSE;
  control->text = platform::AnsiText(text);
  return TRUE;
}

// Of dialogs only.
BOOL WINAPI SetWindowTextW(HWND window, LPCWSTR text) {
  Dialog* dialog = DialogOf(window);
  if (dialog == nullptr) return FALSE;
  dialog->Title() = platform::AnsiText(text);
  return TRUE;
}

LONG_PTR WINAPI GetWindowLongPtrA(HWND window, int index) {
  if (index != DWLP_USER) Unsupported("GetWindowLongPtrA", "anything but a dialog's own word");
  Dialog* dialog = DialogOf(window);
  return dialog == nullptr ? 0 : dialog->UserWord();
}

int WINAPI MessageBoxW(HWND /*owner*/, LPCWSTR text, LPCWSTR title, UINT style) {
  constexpr UINT kButtons = 0x000F;
  if ((style & kButtons) != MB_OK) {
    Unsupported("MessageBoxW", "a message box with other buttons than OK");
  }
  if (!platform::DispatchInModalLoop()) return IDOK;
  return platform::CurrentScreen().ShowMessage(
      {platform::AnsiText(text), platform::AnsiText(title), style});
}
