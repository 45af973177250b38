#include "support/screen.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace qlx99::tests {
namespace {

const ShownControl kNoControl{0, "", 0, {}, -1, 0};

const ShownControl& Find(const ShownDialog& dialog, const char* what, auto isIt) {
  const auto found = std::find_if(dialog.controls.begin(), dialog.controls.end(), isIt);
  if (found != dialog.controls.end()) return *found;
  ADD_FAILURE() << "no " << what << " in " << dialog;
  return kNoControl;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const MessageBox& message) {
  return out << "message box \"" << message.text << "\", title \"" << message.title << "\", style "
             << message.style;
}

std::ostream& operator<<(std::ostream& out, const ShownDialog& dialog) {
  out << "dialog \"" << dialog.title << "\"";
  for (const ShownControl& control : dialog.controls) {
    out << "\n  " << control.id << " \"" << control.text << "\"";
    for (const std::string& line : control.lines) out << "\n    \"" << line << "\"";
  }
  return out;
}

const ShownControl& ShownDialog::Control(int id) const {
  return Find(*this, "such control", [id](const auto& control) { return control.id == id; });
}

const ShownControl& ShownDialog::List() const {
  return Find(*this, "visible list with lines",
              [](const auto& control) { return control.IsVisible() && !control.lines.empty(); });
}

}  // namespace qlx99::tests
