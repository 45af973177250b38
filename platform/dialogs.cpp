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

template <class Result>
Result Fail(DWORD error, Result result) {
  SetLastError(error);
  return result;
}

// Null, with the last error set, when there is no such dialog or control.
Control* FindControl(HWND window, int id) {
  Dialog* dialog = DialogOf(window);
  if (dialog == nullptr) return Fail<Control*>(ERROR_INVALID_WINDOW_HANDLE, nullptr);
  Control* control = dialog->FindControl(id);
  return control != nullptr ? control : Fail<Control*>(ERROR_CONTROL_ID_NOT_FOUND, nullptr);
}

}  // namespace

INT_PTR WINAPI DialogBoxParamW(HINSTANCE module, LPCWSTR templateName, HWND owner,
                               DLGPROC procedure, LPARAM parameter) {
  constexpr WORD kDialogResource = 5;  // RT_DIALOG
  const auto id = reinterpret_cast<std::uintptr_t>(templateName);
  if (id > 0xFFFF || procedure == nullptr) {
    platform::Unsupported("DialogBoxParamW",
                          "a template with a name or a dialog without a procedure");
  }
  if (owner != nullptr && DialogOf(owner) == nullptr) {
    return Fail<INT_PTR>(ERROR_INVALID_WINDOW_HANDLE, 0);
  }
  const platform::ResourceBytes bytes =
      platform::FindResourceOf(module == nullptr ? GetModuleHandleA(nullptr) : module,
                               kDialogResource, static_cast<WORD>(id));
  if (bytes.empty()) return Fail<INT_PTR>(ERROR_RESOURCE_NAME_NOT_FOUND, -1);
  std::optional<DialogTemplate> form = platform::ParseDialogTemplate(bytes);
  if (!form) return Fail<INT_PTR>(ERROR_CANNOT_FIND_WND_CLASS, -1);
  return Dialog(*std::move(form), procedure).Run(parameter, platform::CurrentScreen());
}

BOOL WINAPI EndDialog(HWND window, INT_PTR result) {
  Dialog* dialog = DialogOf(window);
  if (dialog == nullptr) return Fail<BOOL>(ERROR_INVALID_WINDOW_HANDLE, FALSE);
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
  if (message == LB_ADDSTRING) {
    const std::string line = platform::AnsiText(reinterpret_cast<LPCWSTR>(longParam));
    return SendDlgItemMessageA(dialog, id, message, 0, reinterpret_cast<LPARAM>(line.c_str()));
  }
  if (message != LB_GETTEXT) {
    platform::Unsupported("SendDlgItemMessageW", "message " + std::to_string(message));
  }
  const LRESULT length = SendDlgItemMessageA(dialog, id, LB_GETTEXTLEN, wordParam, 0);
  std::string line(static_cast<std::size_t>(std::max<LRESULT>(length, 0)) + 1, '\0');
  if (SendDlgItemMessageA(dialog, id, message, wordParam, reinterpret_cast<LPARAM>(line.data())) <
      0) {
    return LB_ERR;
  }
  const std::u16string wide = platform::ToUtf16(platform::Encoding::kAnsi, line.c_str()).text;
  std::copy_n(wide.c_str(), wide.size() + 1, reinterpret_cast<WCHAR*>(longParam));
  return static_cast<LRESULT>(wide.size());
}

BOOL WINAPI SetDlgItemTextW(HWND dialog, int id, LPCWSTR text) {
  Control* control = FindControl(dialog, id);
  if (control == nullptr) return FALSE;
  control->text = platform::AnsiText(text);
  return TRUE;
}
