// From which folder does the record manager come?
#pragma once

#include "platform/windows_api.h"

namespace qlx99 {

// Loads its client library of that name from the program's folder, the system's, one on the PATH,
// or the folder of qlx99 itself. Never from the current one: that is often the folder of a document
// that came by mail. Null, with the last error set, when none of them has it.
HMODULE LoadRecordManagerLibrary(const char* name);

}  // namespace qlx99
