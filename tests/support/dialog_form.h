#pragma once

#include <string>
#include <vector>

#include "platform/windows_api.h"

namespace qlx99::tests {

// In dialog units.
struct Place {
  int x;
  int y;
  int width;
  int height;
};

struct FormControl {
  DWORD style;
  Place place;
  int id;
  std::string windowClass;
  std::string text;
};

// A dialog as it stands among a library's resources.
struct DialogForm {
  DWORD style;
  Place place;
  std::string title;
  int fontSize;
  std::string font;
  std::vector<FormControl> controls;
};

DialogForm FormOf(HMODULE library, WORD id);

}  // namespace qlx99::tests
