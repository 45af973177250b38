#include "platform/desktop.h"

#include <algorithm>
#include <cctype>

namespace platform {

Window* Desktop::Find(HWND window) {
  const auto found = windows.find(window);
  return found == windows.end() ? nullptr : &found->second;
}

// Never destroyed: libraries may still close their windows while the process ends.
Desktop& TheDesktop() {
  static auto& desktop = *new Desktop;
  return desktop;
}

MessageQueue& QueueOfThisThread() {
  thread_local MessageQueue queue;
  return queue;
}

std::string UpperCase(LPCSTR text) {
  std::string upper = text == nullptr ? "" : text;
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return upper;
}

}  // namespace platform
