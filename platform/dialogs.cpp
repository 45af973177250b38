// Dialog boxes and what their procedures do to the controls.
#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "platform/dialog.h"
#include "platform/dialog_template.h"
#include "platform/drawing.h"
#include "platform/recoding.h"
#include "platform/resources.h"
#include "platform/unsupported.h"
#include "platform/windows_api.h"

namespace {

using platform::Control;
using platform::ControlKind;
using platform::Dialog;
using platform::DialogOf;
using platform::DialogTemplate;

// Null when there is no such dialog or control.
Control* FindControl(HWND window, int id) {
  Dialog* dialog = DialogOf(window);
  return dialog == nullptr ? nullptr : dialog->FindControl(id);
}

}  // namespace

INT_PTR WINAPI DialogBoxParamW(HINSTANCE module, LPCWSTR templateName, HWND /*owner*/,
                               DLGPROC procedure, LPARAM parameter) {
  constexpr WORD kDialogResource = 5;  // RT_DIALOG
  const auto id = reinterpret_cast<std::uintptr_t>(templateName);
  if (id > 0xFFFF || procedure == nullptr) {
    platform::Unsupported("DialogBoxParamW",
                          "a template with a name or a dialog without a procedure");
  }
  const platform::ResourceBytes bytes =
      platform::FindResourceOf(module == nullptr ? GetModuleHandleA(nullptr) : module,
                               kDialogResource, static_cast<WORD>(id));
  const std::optional<DialogTemplate> form = platform::ParseDialogTemplate(bytes);
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
  Control* control = FindControl(dialog, id);
  if (control == nullptr) return 0;
  if (message == WM_GETFONT) return reinterpret_cast<LRESULT>(platform::DialogFont());
  const std::optional<LRESULT> answer = control->kind == ControlKind::kListBox
                                            ? control->list.Receive(message, wordParam, longParam)
                                            : std::nullopt;
  if (!answer) platform::Unsupported("SendDlgItemMessageA", "message " + std::to_string(message));
  return *answer;
}

LRESULT WINAPI SendDlgItemMessageW(HWND dialog, int id, UINT message, WPARAM wordParam,
                                   LPARAM longParam) {
  Control* control = FindControl(dialog, id);
  if (control == nullptr) return 0;
  platform::ListBox& list = control->list;
  if (message == LB_ADDSTRING) {
    return list.Add(platform::AnsiText(reinterpret_cast<LPCWSTR>(longParam)));
  }
  if (message != LB_GETTEXT) {
    platform::Unsupported("SendDlgItemMessageW", "message " + std::to_string(message));
  }
  const auto index = static_cast<int>(wordParam);
  if (index < 0 || index >= list.Count()) return LB_ERR;
  const std::u16string line = platform::ToUtf16(platform::Encoding::kAnsi, list.Line(index)).text;
  std::copy_n(line.c_str(), line.size() + 1, reinterpret_cast<WCHAR*>(longParam));
  return static_cast<LRESULT>(line.size());
}

BOOL WINAPI SetDlgItemTextW(HWND dialog, int id, LPCWSTR text) {
  Control* control = FindControl(dialog, id);
  if (control == nullptr) return FALSE;
  control->text = platform::AnsiText(text);
  return TRUE;
}
