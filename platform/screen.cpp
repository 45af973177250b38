#include "platform/screen.h"

#include <atomic>
#include <iostream>

#include "platform/terminal_screen.h"

namespace platform {

namespace {

std::atomic<Screen*> chosenScreen = nullptr;

}  // namespace

void SetScreen(Screen* screen) { chosenScreen = screen; }

Screen& CurrentScreen() {
  // On stderr, because stdout is for a program's data.
  static TerminalScreen terminal(std::cin, std::cerr);
  Screen* screen = chosenScreen;
  return screen != nullptr ? *screen : terminal;
}

}  // namespace platform
