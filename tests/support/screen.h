// What appears on the screen, in either world.
#pragma once

#include <functional>
#include <memory>
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
  virtual ~OpenDialog() = default;

  virtual ShownDialog Look() const = 0;
  virtual bool IsOpen() const = 0;

  // Each returns false when there is nothing of the kind to click.
  virtual bool Select(int listId, int index) = 0;
  virtual bool DoubleClick(int listId, int index) = 0;
  virtual bool Press(int buttonId) = 0;

  // The Escape key or the close box.
  virtual void Cancel() = 0;
};

class Watcher {
 public:
  virtual ~Watcher() = default;
  virtual void Sees(const MessageBox& message) = 0;  // which is then closed
  virtual void Sees(OpenDialog& dialog) = 0;         // must close it
};

// Once, before the first test. From then on a dialog or a message box that appears while there is
// no Screen does not make the tests wait for ever.
void WatchTheScreen();

// As long as it exists, everything that appears is shown to the watcher.
class Screen {
 public:
  explicit Screen(Watcher& watcher);
  ~Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  // For the watcher, while something is open: the host makes a call on the thread that waits in it.
  // Returns when the call has; what appears meanwhile is shown to the watcher, too.
  void HostCalls(const std::function<void()>& call);

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace qlx99::tests
