// Libraries that a command is told to use: where they are found, and where they lie.
#pragma once

#include <filesystem>
#include <string>

#include "platform/windows_api.h"

namespace office {

// With a folder, the library in it; a bare name is looked for where the library looks for a record
// manager (store/record_manager_library.h). Null, with the last error set, when there is none or it
// cannot be loaded.
HMODULE LoadModule(const std::string& library);

// The file of a loaded library.
std::filesystem::path PathOfModule(HMODULE library);

}  // namespace office
