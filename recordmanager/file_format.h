// The database behind a record file: making one, and opening one with the checks and settings that
// every user of the file shares. What its tables hold is told in engine.h.
#pragma once

#include <string>

#include "recordmanager/record_layout.h"
#include "recordmanager/sql.h"

namespace recordmanager {

// Makes a record file without records at `path` (as HostPath gives it) in one step. `replace` says
// whether a file of that name may be replaced; status 59 when not, 85 when another process has it
// open.
int CreateRecordFile(const std::string& path, const RecordLayout& layout, bool replace);

// Opens the file and reads its layout. Status 30 when it is no record file or one of a later
// format, 14 when what lies beside it belongs to another state of it. `forReading` says that it
// will not be written, so that it may lie where no log can be made.
int OpenDatabase(const std::string& path, Connection& connection, RecordLayout& layout,
                 bool forReading = false);

}  // namespace recordmanager
