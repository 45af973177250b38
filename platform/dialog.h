// A dialog box while it is open: what its procedure and the person before it do to it.
#pragma once

#include <string>
#include <vector>

#include "platform/dialog_template.h"
#include "platform/screen.h"
#include "platform/windows_api.h"

namespace platform {

// A modal dialog from its template to EndDialog. While it exists, its handle is known to DialogOf.
class Dialog final : public DialogView {
 public:
  Dialog(const DialogTemplate& form, DLGPROC procedure);
  ~Dialog() override;
  Dialog(const Dialog&) = delete;
  Dialog& operator=(const Dialog&) = delete;

  // Shows the dialog, unless its initialisation ends it, and returns what it was ended with.
  INT_PTR Run(LPARAM parameter, Screen& screen);

  void End(INT_PTR result);
  HWND Handle();
  LONG_PTR& UserWord() { return userWord_; }
  void SetTitle(const std::string& title);

  // Null when the dialog has no control of that id.
  Control* FindControl(int id);

  const std::string& Title() const override { return title_; }
  const std::vector<Control>& Controls() const override { return controls_; }
  bool IsOpen() const override { return !ended_; }
  bool Select(int listId, int index) override;
  bool DoubleClick(int listId, int index) override;
  bool Press(int buttonId) override;
  void Cancel() override;

 private:
  bool Hears();
  bool Click(int listId, int index);
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

}  // namespace platform
