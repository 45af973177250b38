// The one font that dialogs have here.
#pragma once

#include "platform/windows_api.h"

namespace platform {

// The font of every dialog and its controls, for SelectObject.
HGDIOBJ DialogFont();

}  // namespace platform
