// Where this program lies.
#pragma once

#include <string>

namespace automation {

std::wstring ProgramPath();

// With the backslash at its end.
std::wstring ProgramFolder();

}  // namespace automation
