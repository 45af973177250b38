// What a killed program leaves beside a record file: a log or a journal. SQLite plays either into
// whatever file it finds there, also into one that has been put in place since, as a backup is; the
// result would be neither of the two, and damaged.
//
// So that they can be told apart, each transaction writes two numbers into the row of table `file`
// (engine.h): `state`, which never comes again, and `before`, the state that it began with. They
// are the last bytes of that row's page, which never holds another; so a page that was torn by a
// loss of power has the old ones or the new ones.
//
// A log continues a file whose state is the one in which the log began, or one to which the log
// leads: a part of it may have been moved into the file already.
//
// A journal takes a file back to the state in the journal's copy of that page. It belongs to a file
// that is still in that state, or already in the one to which its transaction was to lead. To tell
// the latter, a state that is reached with a journal ends with the random number in the journal's
// head.
//
// Files of the first format have no states. They are continued by what was begun in that format,
// which cannot be told apart, and by the change to the second, but by nothing later.
#pragma once

#include "recordmanager/sql.h"

namespace recordmanager {

// Sees to it that what lies beside the file, which has not been read through this connection yet,
// continues the file. Status 14 when it does not, and nothing has been changed. Beside a file that
// nobody has written since it was created it can only be a former file's: it is removed.
int CheckLeftovers(Connection& connection);

// Whether the file is to be used with a log, and neither a log nor anything else lies beside it.
bool LacksLog(const Connection& connection);

// Tells the connection, which has just opened the file as an unchanging one and has not read from
// it yet, in which state the file is. Status 84 when somebody has begun to use it.
int NoteState(Connection& connection);

// Whether all that this connection has read of an unchanging file is of that state, and nobody has
// written since: the state is the same, and no log has appeared.
bool IsUnchanged(const Connection& connection);

// A number for the state that the connection's transaction leads to. With a journal it is the right
// one only when the transaction has written something.
StateNumber NumberState(const Connection& connection);

}  // namespace recordmanager
