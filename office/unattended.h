// A command with nobody at the screen: a message box or dialog would wait for ever.
#pragma once

#include <iosfwd>

namespace office {

// As long as it exists, the library's messages go to `err` and its dialogs end without a choice.
// One at a time.
class Unattended {
 public:
  explicit Unattended(std::ostream& err);
  ~Unattended();
  Unattended(const Unattended&) = delete;
  Unattended& operator=(const Unattended&) = delete;
};

// Whether one of its dialogs was to be answered, or the input of a terminal ended before one was.
bool WasChoiceMissed();

}  // namespace office
