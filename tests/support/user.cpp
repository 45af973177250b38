#include "support/user.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace qlx99::tests {
namespace {

constexpr int kTakeButton = 1;

void Press(OpenDialog& dialog, int buttonId) {
  EXPECT_TRUE(dialog.Press(buttonId)) << "button " << buttonId << " of " << dialog.Look().title;
}

const ShownControl kNoControl{0, "", 0, {}, -1, 0};

const ShownControl& Find(const ShownDialog& dialog, const char* what, auto isIt) {
  const auto found = std::find_if(dialog.controls.begin(), dialog.controls.end(), isIt);
  if (found != dialog.controls.end()) return *found;
  ADD_FAILURE() << "no " << what << " in " << dialog.title;
  return kNoControl;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const MessageBox& message) {
  return out << "message box \"" << message.text << "\", title \"" << message.title << "\", style "
             << message.style;
}

const ShownControl& ShownDialog::Control(int id) const {
  return Find(*this, "such control", [id](const auto& control) { return control.id == id; });
}

const ShownControl& ShownDialog::List() const {
  return Find(*this, "visible list with lines",
              [](const auto& control) { return control.IsVisible() && !control.lines.empty(); });
}

std::function<void(OpenDialog&)> Choice(int line) {
  return [line](OpenDialog& dialog) {
    const ShownDialog shown = dialog.Look();
    EXPECT_TRUE(dialog.Select(shown.List().id, line - 1))
        << "line " << line << " of " << shown.title;
    Press(dialog, kTakeButton);
  };
}

void User::Chooses(int line) { Does(Choice(line)); }

void User::TakesTheSelected() { Presses(kTakeButton); }

void User::Cancels() {
  Does([](OpenDialog& dialog) { dialog.Cancel(); });
}

void User::Presses(int buttonId) {
  Does([buttonId](OpenDialog& dialog) { Press(dialog, buttonId); });
}

void User::Does(std::function<void(OpenDialog&)> action) {
  instructions_.push_back(std::move(action));
}

std::vector<MessageBox> User::Messages() { return std::exchange(messages_, {}); }

std::vector<ShownDialog> User::Dialogs() { return std::exchange(dialogs_, {}); }

ShownDialog User::OnlyDialog() {
  const std::vector<ShownDialog> dialogs = Dialogs();
  EXPECT_EQ(dialogs.size(), 1U);
  return dialogs.empty() ? ShownDialog{} : dialogs.front();
}

void User::ExpectNothingLeft() {
  for (const MessageBox& message : Messages()) ADD_FAILURE() << "unexpected " << message;
  EXPECT_TRUE(instructions_.empty() && !atMessage_) << "a window less than expected";
}

void User::Sees(const MessageBox& message) {
  messages_.push_back(message);
  if (const auto action = std::exchange(atMessage_, nullptr)) action();
}

void User::Sees(OpenDialog& dialog) {
  const ShownDialog shown = dialog.Look();
  dialogs_.push_back(shown);
  if (instructions_.empty() && isPatient_) TakesTheSelected();
  if (instructions_.empty()) {
    ADD_FAILURE() << "nobody said what to do at " << shown.title;
  } else {
    const auto action = std::move(instructions_.front());
    instructions_.pop_front();
    action(dialog);
    EXPECT_FALSE(dialog.IsOpen()) << "still open: " << shown.title;
  }
  if (dialog.IsOpen()) dialog.Cancel();
}

}  // namespace qlx99::tests
