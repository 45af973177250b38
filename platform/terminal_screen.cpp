// Message boxes and dialogs for a person at a terminal. The dialogs of this house let the user take
// one line of a list; that is what the terminal offers.
#include <algorithm>
#include <atomic>
#include <charconv>
#include <iostream>
#include <string>

#include "platform/recoding.h"
#include "platform/screen.h"

namespace platform {

namespace {

// As UTF-8. Records may hold any byte; none of them may give orders to the terminal.
std::string Shown(const std::string& text) {
  std::u16string wide = WideOfAnsi(text);
  const auto isOrder = [](char16_t c) {
    return (c < u' ' && c != u'\n') || (c >= 0x7F && c < 0xA0);
  };
  std::replace_if(wide.begin(), wide.end(), isOrder, u' ');
  return Utf8(wide.c_str());
}

// A tab leads to the next multiple of the tab stop, which is in dialog units.
std::string WithColumns(const std::string& line, int tabStop) {
  constexpr int kUnitsPerCharacter = 4;
  const auto step = static_cast<std::size_t>(std::max(tabStop / kUnitsPerCharacter, 1));
  std::string columns;
  for (const char c : line) {
    if (c == '\t') {
      columns.resize((columns.size() / step + 1) * step, ' ');
    } else {
      columns += c;
    }
  }
  columns.erase(columns.find_last_not_of(' ') + 1);
  return columns;
}

void Print(std::ostream& out, const Control& control) {
  if (control.windowClass == u"STATIC") out << '\n' << Shown(control.text);
  if (control.windowClass == u"EDIT") out << ' ' << Shown(control.text);  // behind its label
  int number = 0;
  for (const Line& line : control.lines) {
    out << (number == control.selected ? "\n> " : "\n  ") << number + 1 << "  "
        << Shown(WithColumns(line.text, control.tabStop));
    ++number;
  }
}

// False when the answer means nothing here.
bool Act(Dialog& dialog, const std::string& answer) {
  if (answer.empty()) return dialog.Press(IDOK);
  int number = 0;
  const char* end = answer.data() + answer.size();
  const auto [stop, error] = std::from_chars(answer.data(), end, number);
  if (error != std::errc{} || stop != end) return false;
  if (number == 0) {
    dialog.Cancel();
    return true;
  }
  return std::ranges::any_of(
             dialog.Controls(),
             [&](const Control& control) { return dialog.Select(control.id, number - 1); }) &&
         dialog.Press(IDOK);
}

// A dialog without a button for it can only be closed, and the library takes the first line then.
const char* MeaningOfNone(const Dialog& dialog) {
  return std::ranges::find(dialog.Controls(), IDCANCEL, &Control::id) != dialog.Controls().end()
             ? "Abbruch"
             : "keine Wahl, es gilt die erste Zeile";
}

// On stderr, because stdout is for a program's data.
class TerminalScreen final : public Screen {
 public:
  int ShowMessage(const MessageBoxView& message) override {
    std::cerr << '\n' << Shown(message.title) << '\n' << Shown(message.text) << '\n' << std::flush;
    return IDOK;
  }

  void ShowDialog(Dialog& dialog) override {
    std::cerr << '\n' << Shown(dialog.Title());
    for (const Control& control : dialog.Controls()) {
      if (control.IsVisible()) Print(std::cerr, control);
    }
    // A script that answers nonsense must come to an end, too: that of its input.
    constexpr int kAttempts = 10;
    for (int attempt = 0; dialog.IsOpen(); ++attempt) {
      if (attempt == kAttempts) std::cin.setstate(std::ios::failbit);
      std::cerr << "\nNummer (Eingabe = markierte Zeile, 0 = " << MeaningOfNone(dialog)
                << "): " << std::flush;
      std::string answer;
      if (!std::getline(std::cin, answer)) {
        std::cerr << '\n';
        break;
      }
      std::erase_if(answer, [](char c) { return c == ' ' || c == '\r'; });
      if (!Act(dialog, answer)) std::cerr << "Diese Nummer steht nicht zur Wahl.";
    }
    dialog.Cancel();
  }
};

std::atomic<Screen*> chosenScreen = nullptr;

}  // namespace

void SetScreen(Screen* screen) { chosenScreen = screen; }

Screen& CurrentScreen() {
  static TerminalScreen terminal;
  Screen* screen = chosenScreen;
  return screen != nullptr ? *screen : terminal;
}

}  // namespace platform
