// The file system through which SQLite opens files. It is the one that SQLite would take by itself,
// but for two things. A rollback journal ends, whoever has it open (journal_end.h). And a program
// that looks at a file may keep others from opening it, for writing or at all, for as long as it
// looks (a virus scanner, a backup). SQLite would make do with reading, and be unable to write as
// long as the file is open; here it is waited for the other one to go.
#pragma once

namespace recordmanager {

// Its name for sqlite3_open_v2; null when there is no memory. Whoever waits in vain gets
// SQLITE_BUSY.
const char* PatientFiles();

}  // namespace recordmanager
