// A dialog box while it is open: what its procedure and the person before it do to it.
#pragma once

#include <string>
#include <vector>

#include "platform/dialog_template.h"
#include "platform/windows_api.h"

namespace platform {

class Screen;

// All texts are Windows-1252 bytes, at full length.

struct Line {
  std::string text;
  LPARAM data = 0;
};

struct Control {
  int id;
  std::u16string windowClass;  // in capitals
  std::string text;
  DWORD style;

  // Of a list box:
  std::vector<Line> lines = {};
  int selected = -1;         // -1: no line
  int tabStop = 0;           // in dialog units; 0: none is set
  int horizontalExtent = 0;  // in pixels

  bool IsVisible() const { return (style & WS_VISIBLE) != 0; }
  bool HasLine(WPARAM index) const { return index < lines.size(); }
};

// A modal dialog from its template to EndDialog. While it exists, its handle is known to DialogOf.
class Dialog {
 public:
  Dialog(const DialogTemplate& form, DLGPROC procedure);
  ~Dialog();
  Dialog(const Dialog&) = delete;
  Dialog& operator=(const Dialog&) = delete;

  // Shows the dialog, unless its initialisation ends it, and returns what it was ended with.
  INT_PTR Run(LPARAM parameter, Screen& screen);

  void End(INT_PTR result);
  HWND Handle();
  LONG_PTR& UserWord() { return userWord_; }
  std::string& Title() { return title_; }

  // In the order of the template.
  const std::vector<Control>& Controls() const { return controls_; }

  // Null when the dialog has no control of that id.
  Control* FindControl(int id);

  // True until the dialog procedure has ended the dialog. Nothing can be done to a closed dialog.
  bool IsOpen() const { return !ended_; }

  // A person's actions. The dialog procedure hears of each before the call returns. Each returns
  // false when the dialog has nothing of the kind to click.
  bool Select(int listId, int index);
  bool DoubleClick(int listId, int index);  // which selects the line first
  bool Press(int buttonId);
  void Cancel();  // the Escape key or the close box

 private:
  bool Hears();
  bool CanBeUsed(int id, const char16_t* windowClass);
  void Notify(int id, WORD code);

  std::string title_;
  std::vector<Control> controls_;
  DLGPROC procedure_;
  bool ended_ = false;
  INT_PTR result_ = 0;
  LONG_PTR userWord_ = 0;
};

// Null when the handle is no dialog's that exists.
Dialog* DialogOf(HWND window);

// The font of every dialog and its controls, for SelectObject.
HGDIOBJ DialogFont();

}  // namespace platform
