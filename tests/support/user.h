// The person at the screen: acts on dialogs as the test says, beforehand, and remembers what was
// shown. A dialog that the test did not foresee, and a message that it did not look at, fail it.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/screen.h"

namespace qlx99::tests {

// Takes a line of the dialog's list, counted from 1; what the user may be told to do.
std::function<void(OpenDialog&)> Choice(int line);

class User {
 public:
  User() { ShowTheScreenTo(this); }
  ~User() { ShowTheScreenTo(nullptr); }
  User(const User&) = delete;
  User& operator=(const User&) = delete;

  // What to do at the next dialog, one instruction for each dialog to come.
  void Chooses(int line);      // selects that line, counted from 1, and takes it
  void TakesTheSelected();     // takes what is selected already
  void Cancels();              // by the Escape key or the close box
  void Presses(int buttonId);  // and nothing else
  void Does(std::function<void(OpenDialog&)> action);

  // What to do at the next message, before it is closed.
  void DoesAtMessage(std::function<void()> action) { atMessage_ = std::move(action); }

  // At every dialog without an instruction of its own, takes what is selected.
  void TakesTheSelectedFromNowOn() { isPatient_ = true; }

  // What has been shown since the last time the test asked.
  std::vector<MessageBox> Messages();
  std::vector<ShownDialog> Dialogs();

  // The only dialog shown since then.
  ShownDialog OnlyDialog();

  // At a test's end: no message was left unread, and no instruction unused.
  void ExpectNothingLeft();

  // For the screen: a message, which is then closed, and a dialog, which it closes.
  void Sees(const MessageBox& message);
  void Sees(OpenDialog& dialog);

 private:
  std::deque<std::function<void(OpenDialog&)>> instructions_;
  std::function<void()> atMessage_;
  bool isPatient_ = false;
  std::vector<MessageBox> messages_;
  std::vector<ShownDialog> dialogs_;
};

// The messages that many exports have in common.
MessageBox CannotOpen(const std::string& fileName);
MessageBox CannotClose(const std::string& fileName);
MessageBox NoDataPath(const std::string& whatCannotBeTaken);  // "User", "Adressadaten", ...
MessageBox NoRecordManager();
MessageBox TooMuchData();
MessageBox Invalid(const std::string& text);  // of validation: OK button only

}  // namespace qlx99::tests
