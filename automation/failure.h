// The automation error that a client gets when a call cannot be made.
#pragma once

#include <string>
#include <string_view>

#include "platform/windows_api.h"

namespace automation {

struct Failure {
  HRESULT code;
  // Read by people. Empty where Windows' own words for the code will do.
  std::wstring text = {};
};

// Widens a name from our own sources, which are ASCII.
inline std::wstring Widened(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

}  // namespace automation
