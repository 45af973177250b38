// The screen that shows message boxes and dialogs: the terminal, unless another one is set.
#pragma once

#include <string>

#include "platform/dialog.h"

namespace platform {

// Texts in Windows-1252.
struct MessageBoxView {
  std::string text;
  std::string title;
  UINT style;
};

class Screen {
 public:
  virtual ~Screen() = default;

  // Returns the id of the button that was pressed.
  virtual int ShowMessage(const MessageBoxView& message) = 0;

  // Returns when the dialog is closed; it must not be left open.
  virtual void ShowDialog(Dialog& dialog) = 0;
};

// The caller keeps the screen alive until another is set; null brings the terminal back.
void SetScreen(Screen* screen);

Screen& CurrentScreen();

}  // namespace platform
