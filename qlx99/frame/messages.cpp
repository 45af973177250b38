#include "frame/messages.h"

#include <array>
#include <cstdio>

#include "frame/screen.h"

namespace qlx99 {

void ShowMessage(const Message& message) {
  ShowMessageBox(message.text, message.title, message.style);
}

void ShowMessage(const Message& message, const char* name) {
  std::array<char, 256> text{};
  std::snprintf(text.data(), text.size(), message.text, name);
  ShowMessage({text.data(), message.title, message.style});
}

}  // namespace qlx99
