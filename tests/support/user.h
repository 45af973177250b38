// The screen, and the person at it, who acts on dialogs as the test says, beforehand, and remembers
// what was shown. A dialog that the test did not foresee, and a message that it did not look at,
// fail it.
#pragma once

#include <deque>
#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "platform/windows_api.h"

namespace qlx99::tests {

// All texts are UTF-8.

struct MessageBox {
  std::string text;
  std::string title;
  UINT style;

  bool operator==(const MessageBox&) const = default;
};

std::ostream& operator<<(std::ostream& out, const MessageBox& message);

struct ShownControl {
  int id;
  std::string text;
  DWORD style;
  std::vector<std::string> lines;  // of a list box
  int selected;                    // its selected line, counted from 0; -1 for none
  int horizontalExtent;            // how far it scrolls, in pixels

  bool IsVisible() const { return (style & WS_VISIBLE) != 0; }
};

// A dialog as it looked when it appeared.
struct ShownDialog {
  std::string title;
  std::vector<ShownControl> controls;  // in the template's order

  // Fails the test when there is no such control.
  const ShownControl& Control(int id) const;

  // The dialog's visible list.
  const ShownControl& List() const;
};

// A dialog that waits for its user.
class OpenDialog {
 public:
  explicit OpenDialog(HWND window) : window_(window) {}

  ShownDialog Look() const;
  bool IsOpen() const;

  // Each returns false when there is nothing of the kind to click.
  bool Select(int listId, int index);
  bool Press(int buttonId);

  // By the Escape key.
  void Cancel();

 private:
  HWND window_;
};

class User;

// Once, before the first test. From then on a dialog or a message box that appears while there is
// no user does not make the tests wait for ever.
void WatchTheScreen();

// From now on everything that appears is shown to this user, or with null to nobody.
void ShowTheScreenTo(User* user);

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
inline MessageBox Invalid(const std::string& text) { return {text, "Systemmeldung !", MB_OK}; }
inline MessageBox CannotOpen(const std::string& fileName) {
  return Invalid("Die Datei " + fileName + " kann nicht geöffnet werden !");
}
inline MessageBox CannotClose(const std::string& fileName) {
  return Invalid("Die Datei " + fileName + " kann nicht geschlossen werden !");
}
// Of "User", "Adressdaten", ...
inline MessageBox NoDataPath(const std::string& data) {
  return {"Datenpfad nicht gefunden !\n " + data + " können nicht übernommen werden ! ",
          "Systemmeldung !", MB_ICONHAND};
}
inline MessageBox NoRecordManager() {
  return {"Die Datenbank Schnittstelle Pervasie.SQL / Btrieve konnte nicht geladen werden",
          "Systemmeldung", MB_OK};
}
inline MessageBox TooMuchData() {
  return {"Datenmenge ist zu groß !", "Systemmeldung !", MB_ICONHAND};
}

}  // namespace qlx99::tests
