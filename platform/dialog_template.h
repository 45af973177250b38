#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/screen.h"

namespace platform {

struct DialogTemplate {
  std::string title;
  DWORD style;
  Place place;
  std::vector<Control> controls;
};

// Reads the binary form of a dialog of a resource script, the plain (DIALOG) or the extended one
// (DIALOGEX). Nothing when it is broken or has a control of a class that is none of ControlKind.
std::optional<DialogTemplate> ParseDialogTemplate(std::span<const std::byte> bytes);

}  // namespace platform
