// What the user sees: message boxes, dialogs and their texts. The library's texts are Windows-1252,
// as the office's are. Windows would take them for texts in the host's code page, which may be
// another one, so they are made wide here, all of them.
#pragma once

#include <array>
#include <cstddef>

#include "platform/windows_api.h"

namespace qlx99 {

// A Windows-1252 text as the window functions take it. None that is shown has more than 300
// characters; what is behind them is left out.
class WideText {
 public:
  explicit WideText(const char* ansi);
  const WCHAR* Get() const { return text_.data(); }
  LPARAM AsParam() const { return reinterpret_cast<LPARAM>(text_.data()); }

  static constexpr std::size_t kLongest = 300;

 private:
  std::array<WCHAR, kLongest + 1> text_{};
};

// Stands in for the user where a program that has the library built in has nobody at its screen.
struct AbsentUser {
  void (*tell)(const char* text, const char* title);  // in a message box's place; Windows-1252
  void (*miss)();                                     // a dialog, which ends without a choice
};

// Null, as at first, brings the user back. The caller keeps what it points to.
void SetAbsentUser(const AbsentUser* user);

// Without an owner window; `style` as of MessageBoxW.
void ShowMessageBox(const char* text, const char* title, UINT style);

// Runs the dialog of that number among the library's resources until it is ended, without an owner
// window. `parameter` comes to the procedure with WM_INITDIALOG.
void RunDialog(WORD dialog, DLGPROC procedure, LPARAM parameter);

void SetTitle(HWND window, const char* title);
void SetControlText(HWND dialog, int id, const char* text);

// Adds the line to a list box and returns its index.
LRESULT AddLine(HWND dialog, int list, const char* line);

// Copies a line of a list box, as it was added, to `line`, which has room for `size` bytes with the
// terminator. Empty when there is no such line, or too little room.
void ReadLine(HWND dialog, int list, WPARAM index, char* line, std::size_t size);

}  // namespace qlx99
