// The screen of a person at a terminal.
#pragma once

#include <iosfwd>

#include "platform/screen.h"

namespace platform {

// Shows everything as UTF-8 text and reads answers line by line. Message boxes do not wait.
class TerminalScreen final : public Screen {
 public:
  // The streams must outlive the screen.
  TerminalScreen(std::istream& in, std::ostream& out) : in_(in), out_(out) {}

  int ShowMessage(const MessageBoxView& message) override;
  void ShowDialog(DialogView& dialog) override;

 private:
  std::istream& in_;
  std::ostream& out_;
};

}  // namespace platform
