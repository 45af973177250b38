/* SQLite, and what has to be done within it after a fork.
 *
 * SQLite keeps a table of the files that the process has open and of the locks that it holds on
 * them. A child process inherits the table and the open files, but not the locks: whatever it
 * opened would rely on locks that only its parent has. */
#include <sqlite3.c>

/* To be called in a child before it opens anything. What its parent had open must never be used or
 * closed in it: closing a file gives back every lock that the process holds on it. Random numbers
 * begin anew, or parent and child would draw the same names for drafts, and the same numbers for
 * different states of a file. */
void ForgetParent(void) {
  inodeList = NULL;
  sqlite3_randomness(0, NULL);
}
