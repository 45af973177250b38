// Which library an address belongs to.
#pragma once

#include "platform/windows_api.h"

namespace platform {

// The program or library whose code or data holds `address`, as LoadLibraryA and GetModuleHandleA
// name it; null when the address belongs to none.
HMODULE ModuleAt(const void* address);

}  // namespace platform
