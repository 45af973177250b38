// Who sees the message boxes and dialogs: a person at the terminal, unless another screen is set.
#pragma once

#include <string>
#include <vector>

#include "platform/list_box.h"
#include "platform/windows_api.h"

namespace platform {

// All texts are Windows-1252 bytes, at full length.

struct MessageBoxView {
  std::string text;
  std::string title;
  UINT style;
};

enum class ControlKind { kButton, kEdit, kStatic, kListBox };

struct Control {
  int id;
  ControlKind kind;
  std::string text;
  DWORD style;
  ListBox list;  // without lines unless this is a list box

  bool IsVisible() const { return (style & WS_VISIBLE) != 0; }
};

// An open dialog as the person before it has it. What the person does reaches the dialog procedure
// before the call returns.
class DialogView {
 public:
  virtual ~DialogView() = default;

  virtual const std::string& Title() const = 0;

  // In the order of the template.
  virtual const std::vector<Control>& Controls() const = 0;

  // True until the dialog procedure has ended the dialog. Nothing can be done to a closed dialog.
  virtual bool IsOpen() const = 0;

  // Clicks a line of a visible list. False when there is no such list or line.
  virtual bool Select(int listId, int index) = 0;

  // Double-clicks a line, which selects it first.
  virtual bool DoubleClick(int listId, int index) = 0;

  // False when there is no such button to press.
  virtual bool Press(int buttonId) = 0;

  // The Escape key or the close box.
  virtual void Cancel() = 0;
};

class Screen {
 public:
  virtual ~Screen() = default;

  // Returns the id of the button that was pressed.
  virtual int ShowMessage(const MessageBoxView& message) = 0;

  // Returns when the dialog is closed; it must not be left open.
  virtual void ShowDialog(DialogView& dialog) = 0;
};

// The caller keeps the screen alive until another is set; null brings the terminal back.
void SetScreen(Screen* screen);

Screen& CurrentScreen();

}  // namespace platform
