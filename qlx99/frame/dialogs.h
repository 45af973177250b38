// What the library's dialogs have in common: the user takes a line of a list, or none. They have no
// owner window, so while one is open the host may make another call, which may open another one.
// So a dialog knows the values of its own call and nothing else:
//
//   struct ColourChoice {
//     static constexpr int kLines = IDC_COLOURS;  // the list that the user sees
//     bool Fill(HWND dialog);                     // false: the dialog ends before it is shown
//     void Take(HWND dialog, WPARAM index);       // the user took that line, counted from 0
//   };
//   ColourChoice choice;
//   RunDialog(IDD_COLOURS, choice);
#pragma once

#include "frame/screen.h"
#include "platform/windows_api.h"
#include "resources/resource.h"

namespace qlx99 {

// Gives a list box its only tab stop, in dialog units, which stands for all its multiples.
void SetTabStop(HWND dialog, int list, UINT tabStop);

// Lets a list box with that tab stop scroll at least as far as the text of a line reaches; tabs at
// its end do not count.
void ScrollAsFarAs(HWND dialog, int list, UINT tabStop, const char* line);

// The selected line of the list, or LB_ERR.
LRESULT SelectedLine(HWND dialog, int list);

template <class Selection>
INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wordParam, LPARAM longParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(dialog, DWLP_USER, longParam);
    if (!reinterpret_cast<Selection*>(longParam)->Fill(dialog)) EndDialog(dialog, IDC_CANCEL);
  }
  auto* const selection = reinterpret_cast<Selection*>(GetWindowLongPtrA(dialog, DWLP_USER));
  if (message != WM_COMMAND || selection == nullptr) return 0;
  const WORD command = LOWORD(wordParam);
  if (command == IDC_TAKE) {
    const LRESULT index = SelectedLine(dialog, Selection::kLines);
    if (index != LB_ERR) selection->Take(dialog, static_cast<WPARAM>(index));
  }
  if (command == IDC_TAKE || command == IDC_CANCEL) EndDialog(dialog, IDC_CANCEL);
  return 0;
}

// Shows the dialog and returns when it has ended; what the user took is in `selection` then.
template <class Selection>
void RunDialog(WORD id, Selection& selection) {
  RunDialog(id, DialogProc<Selection>, reinterpret_cast<LPARAM>(&selection));
}

}  // namespace qlx99
