#include "platform/screen.h"

#include "support/text.h"
#include "support/user.h"

namespace qlx99::tests {
namespace {

ShownControl Shown(const platform::Control& control) {
  ShownControl shown{control.id, Utf8(control.text), control.style,
                     {},         control.selected,   control.horizontalExtent};
  for (const platform::Line& line : control.lines) shown.lines.push_back(Utf8(line.text));
  return shown;
}

class Screen final : public platform::Screen {
 public:
  int ShowMessage(const platform::MessageBoxView& message) override {
    user->Sees({Utf8(message.text), Utf8(message.title), message.style});
    return IDOK;
  }
  void ShowDialog(platform::Dialog& view) override {
    OpenDialog dialog(view.Handle());
    user->Sees(dialog);
  }

  User* user = nullptr;
};

}  // namespace

ShownDialog OpenDialog::Look() const {
  platform::Dialog& view = *platform::DialogOf(window_);
  ShownDialog shown{Utf8(view.Title()), {}};
  for (const auto& control : view.Controls()) shown.controls.push_back(Shown(control));
  return shown;
}
bool OpenDialog::IsOpen() const { return platform::DialogOf(window_)->IsOpen(); }
bool OpenDialog::Select(int listId, int index) {
  return platform::DialogOf(window_)->Select(listId, index);
}
bool OpenDialog::Press(int buttonId) { return platform::DialogOf(window_)->Press(buttonId); }
void OpenDialog::Cancel() { platform::DialogOf(window_)->Cancel(); }

// Nobody sits at the terminal: a dialog that no test expects is cancelled.
void WatchTheScreen() { std::freopen("/dev/null", "r", stdin); }

void ShowTheScreenTo(User* user) {
  static Screen screen;
  screen.user = user;
  platform::SetScreen(user == nullptr ? nullptr : &screen);
}

}  // namespace qlx99::tests
