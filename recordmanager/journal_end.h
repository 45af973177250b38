// How a rollback journal ends. A journal that does not end takes back, for whoever opens the file
// next, what was acknowledged. SQLite ends it by truncating or deleting it; but Windows truncates
// and deletes no file that somebody has mapped into memory, and deletes none that somebody has
// open, and SQLite takes a truncation that was refused so for done. What always works is writing: a
// journal without its mark is none.
#pragma once

#include <sqlite3.h>

namespace recordmanager {

// The bytes that `real` wants for an open file, and those that EndSurely needs behind them.
int FileSizeWithEnd(const sqlite3_vfs& real);

// To be called when `real` has opened a journal: whoever truncates it to nothing ends it.
void EndSurely(sqlite3_file* journal, const sqlite3_vfs& real);

bool IsJournal(const char* name);

// Ends a journal that cannot be deleted, given as `files` opens it. Returns SQLite's result.
int EndInPlace(sqlite3_vfs& files, const char* name);

}  // namespace recordmanager
