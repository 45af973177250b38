#include "office/unattended.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>

#include "frame/screen.h"
#include "office/host.h"
#include "office/text_encoding.h"

namespace office {
namespace {

// The library calls plain functions.
struct Absence {
  std::ostream* err = nullptr;
  bool choiceWasMissed = false;
};

Absence absence;

// Line by line, as a line break is nothing that Decode shows.
void Write(std::string_view ansi) {
  while (!ansi.empty()) {
    const std::string_view line = ansi.substr(0, ansi.find('\n'));
    *absence.err << Decode(Trimmed(line)) << "\n";
    ansi.remove_prefix(std::min(line.size() + 1, ansi.size()));
  }
}

void Tell(const char* text, const char* title) {
  Write(title);
  Write(text);
}

void Miss() {
  absence.choiceWasMissed = true;
  *absence.err << "There is nobody to answer a dialog, so it ended without a choice.\n";
}

constexpr qlx99::AbsentUser kAbsentUser{Tell, Miss};

}  // namespace

Unattended::Unattended(std::ostream& err) {
  absence = {&err, false};
  qlx99::SetAbsentUser(&kAbsentUser);
}

Unattended::~Unattended() {
  qlx99::SetAbsentUser(nullptr);
  absence = {};
}

bool WasChoiceMissed() { return absence.choiceWasMissed || HasInputEnded(); }

}  // namespace office
