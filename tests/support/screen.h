// What appears on the screen, in either world.
#pragma once

#include <functional>
#include <ostream>
#include <string>
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

std::ostream& operator<<(std::ostream& out, const ShownDialog& dialog);

// A dialog that waits for its user.
class OpenDialog {
 public:
  explicit OpenDialog(HWND window) : window_(window) {}

  ShownDialog Look() const;
  bool IsOpen() const;

  // Each returns false when there is nothing of the kind to click.
  bool Select(int listId, int index);
  bool DoubleClick(int listId, int index);
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

}  // namespace qlx99::tests
