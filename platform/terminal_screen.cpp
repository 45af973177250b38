// Message boxes and dialogs for a person at a terminal. The dialogs of this house let the user take
// one line of a list; that is what the terminal offers.
#include "platform/terminal_screen.h"

#include <algorithm>
#include <charconv>
#include <istream>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "platform/recoding.h"

namespace platform {

namespace {

// Records may hold any byte; none of them may give orders to the terminal.
std::string Shown(std::string text) {
  const auto isOrder = [](unsigned char c) { return (c < ' ' && c != '\n') || c == 0x7F; };
  std::replace_if(text.begin(), text.end(), isOrder, ' ');
  std::u16string wide = ToUtf16(Encoding::kAnsi, text).text;
  const auto isHighOrder = [](char16_t c) { return c >= 0x80 && c < 0xA0; };
  std::replace_if(wide.begin(), wide.end(), isHighOrder, u' ');
  return FromUtf16(Encoding::kUtf8, wide, "?").text;
}

// The column that a tab leads to: the next multiple of the list's tab stop.
std::size_t NextColumn(int tabStop, std::size_t column) {
  constexpr int kUnitsPerCharacter = 4;  // a dialog unit is a quarter of a character's width
  constexpr int kUsualStop = 8;
  const auto step =
      static_cast<std::size_t>(tabStop > 0 ? tabStop / kUnitsPerCharacter : kUsualStop);
  return (column / step + 1) * step;
}

std::string WithColumns(const std::string& line, int tabStop) {
  std::string columns;
  for (const char c : line) {
    if (c == '\t') {
      columns.resize(NextColumn(tabStop, columns.size()), ' ');
    } else {
      columns += c;
    }
  }
  columns.erase(columns.find_last_not_of(' ') + 1);
  return columns;
}

// The list that the user chooses from; null when the dialog shows none.
const Control* VisibleList(const DialogView& dialog) {
  const std::vector<Control>& controls = dialog.Controls();
  const auto list = std::find_if(controls.begin(), controls.end(), [](const Control& control) {
    return control.kind == ControlKind::kListBox && control.IsVisible();
  });
  return list == controls.end() ? nullptr : &*list;
}

void PrintTexts(std::ostream& out, const DialogView& dialog) {
  out << '\n' << Shown(dialog.Title());
  for (const Control& control : dialog.Controls()) {
    if (!control.IsVisible()) continue;
    if (control.kind == ControlKind::kStatic) {
      out << '\n' << Shown(control.text);
    } else if (control.kind == ControlKind::kEdit) {
      out << ' ' << Shown(control.text);  // behind the label that it follows
    }
  }
  out << '\n';
}

void PrintLines(std::ostream& out, const ListBox& list) {
  for (int index = 0; index < list.Count(); ++index) {
    out << (index == list.Selected() ? "> " : "  ") << index + 1 << "  "
        << Shown(WithColumns(list.Line(index), list.TabStop())) << '\n';
  }
}

void PrintPrompt(std::ostream& out, const Control* list) {
  if (list == nullptr || list->list.Count() == 0) {
    out << "Eingabe = weiter, 0 = Abbruch: ";
  } else if (list->list.Selected() < 0) {
    out << "Nummer (0 = Abbruch): ";
  } else {
    out << "Nummer (Eingabe = " << list->list.Selected() + 1 << ", 0 = Abbruch): ";
  }
  out << std::flush;
}

bool PressDefault(DialogView& dialog) {
  constexpr DWORD kButtonType = 0x000F;
  for (const Control& control : dialog.Controls()) {
    if (control.kind == ControlKind::kButton && (control.style & kButtonType) == BS_DEFPUSHBUTTON) {
      return dialog.Press(control.id);
    }
  }
  return dialog.Press(IDOK);
}

std::optional<int> NumberIn(std::string_view answer) {
  int number = 0;
  const auto [end, error] = std::from_chars(answer.data(), answer.data() + answer.size(), number);
  return error == std::errc{} && end == answer.data() + answer.size() ? std::optional(number)
                                                                      : std::nullopt;
}

// False when the answer means nothing here.
bool Act(DialogView& dialog, const std::string& answer) {
  if (answer.empty()) return PressDefault(dialog);
  const std::optional<int> number = NumberIn(answer);
  if (number == 0) {
    dialog.Cancel();
    return true;
  }
  const Control* list = VisibleList(dialog);
  return number && list != nullptr && dialog.Select(list->id, *number - 1) && PressDefault(dialog);
}

}  // namespace

int TerminalScreen::ShowMessage(const MessageBoxView& message) {
  out_ << '\n' << Shown(message.title) << '\n' << Shown(message.text) << '\n' << std::flush;
  return IDOK;
}

void TerminalScreen::ShowDialog(DialogView& dialog) {
  const Control* list = VisibleList(dialog);
  PrintTexts(out_, dialog);
  if (list != nullptr) PrintLines(out_, list->list);
  constexpr int kAttempts = 10;  // a script that answers nonsense must come to an end, too
  for (int attempt = 0; attempt < kAttempts && dialog.IsOpen(); ++attempt) {
    PrintPrompt(out_, list);
    std::string answer;
    if (!std::getline(in_, answer)) break;
    std::erase_if(answer, [](char c) { return c == ' ' || c == '\r'; });
    if (!Act(dialog, answer)) out_ << "Diese Nummer steht nicht zur Wahl.\n";
  }
  dialog.Cancel();
}

}  // namespace platform
