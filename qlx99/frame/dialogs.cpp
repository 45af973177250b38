#include "frame/dialogs.h"

namespace qlx99 {

LRESULT AddListLine(HWND dialog, int list, const char* text) {
  return SendDlgItemMessageA(dialog, list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
}

void SetTabStop(HWND dialog, int list, UINT tabStop) {
  SendDlgItemMessageA(dialog, list, LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&tabStop));
}

LRESULT SelectedLine(HWND dialog, int list) {
  return SendDlgItemMessageA(dialog, list, LB_GETCURSEL, 0, 0);
}

}  // namespace qlx99
