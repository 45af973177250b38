// The operations that read a record along a key: Get Equal to Get Last.
#pragma once

#include "recordmanager/call.h"
#include "recordmanager/cursor.h"
#include "recordmanager/record_file.h"

namespace recordmanager {

// Carries out operation 5 to 13. On success the cursor stands on the record that was read. A read
// that finds nothing leaves it off either end of the key or, for Get Equal, nowhere; after any
// other status it stays where it was.
int ReadRecord(const Call& call, RecordFile& file, Cursor& cursor);

}  // namespace recordmanager
