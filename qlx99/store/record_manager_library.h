// From which folder does the record manager come?
#pragma once

#include "platform/windows_api.h"

namespace qlx99 {

// Loads the client library of that name from the program's folder, the system's, one on the PATH,
// or that of qlx99; never from the current one, which often is the folder of a document that came
// by mail. Null, with the last error set, when none of them has it.
HMODULE LoadRecordManagerLibrary(const char* name);

}  // namespace qlx99
