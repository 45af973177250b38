#include "support/user.h"

#include <gtest/gtest.h>

#include <utility>

namespace qlx99::tests {
namespace {

constexpr int kTakeButton = 1;
constexpr UINT kPlain = 0;
constexpr UINT kStopIcon = 16;

void Press(OpenDialog& dialog, int buttonId) {
  EXPECT_TRUE(dialog.Press(buttonId)) << "button " << buttonId << " of " << dialog.Look();
}

}  // namespace

std::function<void(OpenDialog&)> Choice(int line) {
  return [line](OpenDialog& dialog) {
    const ShownDialog shown = dialog.Look();
    EXPECT_TRUE(dialog.Select(shown.List().id, line - 1)) << "line " << line << " of " << shown;
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
    ADD_FAILURE() << "nobody said what to do at " << shown;
  } else {
    const auto action = std::move(instructions_.front());
    instructions_.pop_front();
    action(dialog);
    EXPECT_FALSE(dialog.IsOpen()) << "still open: " << shown;
  }
  if (dialog.IsOpen()) dialog.Cancel();
}

MessageBox CannotOpen(const std::string& fileName) {
  return Invalid("Die Datei " + fileName + " kann nicht geöffnet werden !");
}

MessageBox CannotClose(const std::string& fileName) {
  return Invalid("Die Datei " + fileName + " kann nicht geschlossen werden !");
}

MessageBox NoDataPath(const std::string& whatCannotBeTaken) {
  return {
      "Datenpfad nicht gefunden !\n " + whatCannotBeTaken + " können nicht übernommen werden ! ",
      "Systemmeldung !", kStopIcon};
}

MessageBox NoRecordManager() {
  return {"Die Datenbank Schnittstelle Pervasie.SQL / Btrieve konnte nicht geladen werden",
          "Systemmeldung", kPlain};
}

MessageBox TooMuchData() { return {"Datenmenge ist zu groß !", "Systemmeldung !", kStopIcon}; }

MessageBox Invalid(const std::string& text) { return {text, "Systemmeldung !", kPlain}; }

}  // namespace qlx99::tests
