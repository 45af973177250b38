// What a client is told when a call cannot be made: one of the errors that automation knows, or a
// text of our own.
#pragma once

#include <string>
#include <string_view>

#include "platform/windows_api.h"

namespace automation {

struct Failure {
  HRESULT code;
  // For people; only where Windows' own words for the code would not do.
  std::wstring text = {};
};

// Of the names in our own sources, which are ASCII.
inline std::wstring Widened(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

}  // namespace automation
