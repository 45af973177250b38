// The operations that write a record: Insert, Update and Delete.
#pragma once

#include "recordmanager/call.h"
#include "recordmanager/cursor.h"
#include "recordmanager/record_file.h"

namespace recordmanager {

// Carries out operation 2 to 4. Unless the status is 0, nothing is written and the cursor stays as
// it is.
int WriteRecord(const Call& call, RecordFile& file, Cursor& cursor);

}  // namespace recordmanager
