// A dialog as it stands among a library's resources.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/windows_api.h"

namespace platform {

// In dialog units, from the upper left corner of what it lies in.
struct Place {
  int x;
  int y;
  int width;
  int height;
};

struct ControlTemplate {
  DWORD style;
  Place place;
  int id;
  std::u16string windowClass;  // in capitals
  std::u16string text;
};

struct DialogTemplate {
  DWORD style;
  Place place;
  std::u16string title;
  int fontSize;
  std::u16string font;
  std::vector<ControlTemplate> controls;  // in the order of the script
};

// Reads what the resource compiler makes of a DIALOG of a script. It must have a font, but no
// menu, class or extended style; of its controls none may have an extended style or data of its
// own. Nothing when it has.
std::optional<DialogTemplate> ParseDialogTemplate(std::span<const std::byte> bytes);

}  // namespace platform
