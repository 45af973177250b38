#include "platform/screen.h"

#include <cstdio>

#include "support/screen.h"
#include "support/text.h"

namespace qlx99::tests {
namespace {

ShownControl Shown(const platform::Control& control) {
  ShownControl shown{control.id, Utf8(control.text), control.style,
                     {},         control.selected,   control.horizontalExtent};
  for (const platform::Line& line : control.lines) shown.lines.push_back(Utf8(line.text));
  return shown;
}

class Dialog final : public OpenDialog {
 public:
  explicit Dialog(platform::Dialog& view) : view_(view) {}

  ShownDialog Look() const override {
    ShownDialog shown{Utf8(view_.Title()), {}};
    for (const auto& control : view_.Controls()) shown.controls.push_back(Shown(control));
    return shown;
  }
  bool IsOpen() const override { return view_.IsOpen(); }
  bool Select(int listId, int index) override { return view_.Select(listId, index); }
  bool DoubleClick(int listId, int index) override { return view_.DoubleClick(listId, index); }
  bool Press(int buttonId) override { return view_.Press(buttonId); }
  void Cancel() override { view_.Cancel(); }

 private:
  platform::Dialog& view_;
};

}  // namespace

class Screen::Implementation final : public platform::Screen {
 public:
  explicit Implementation(Watcher& watcher) : watcher_(watcher) { platform::SetScreen(this); }
  ~Implementation() override { platform::SetScreen(nullptr); }
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  int ShowMessage(const platform::MessageBoxView& message) override {
    watcher_.Sees({Utf8(message.text), Utf8(message.title), message.style});
    return IDOK;
  }
  void ShowDialog(platform::Dialog& view) override {
    Dialog dialog(view);
    watcher_.Sees(dialog);
  }

 private:
  Watcher& watcher_;
};

// Nobody sits at the terminal: a dialog that no test expects is cancelled.
void WatchTheScreen() { std::freopen("/dev/null", "r", stdin); }

Screen::Screen(Watcher& watcher) : implementation_(std::make_unique<Implementation>(watcher)) {}

Screen::~Screen() = default;

// The person sits in the waiting thread.
void Screen::HostCalls(const std::function<void()>& call) { call(); }

}  // namespace qlx99::tests
