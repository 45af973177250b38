// The library's exports, within its own namespace: what callers are given, and the window procedure
// that only Windows calls. Within the project include this, never the public header itself.
#pragma once

#include "platform/windows_api.h"

namespace qlx99 {

#include "qlx99.h"

extern "C" LRESULT CALLBACK MainWndProc(HWND window, UINT message, WPARAM wordParam,
                                        LPARAM longParam);

}  // namespace qlx99
