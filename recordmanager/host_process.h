// What the record manager needs to know of the process that it lives in; one implementation a host.
#pragma once

namespace recordmanager {

// Calls of several threads take turns. The lock for that needs no memory and is there as long as
// the library: hosts end while one of their threads is in a call, and call after the end of main.
// Status 0, or why there is no turn: 101 when there is no memory to see forks by; 85 on Windows
// when a thread has ended within a call, or has left it by an exception, which may show only after
// half a minute; 85 elsewhere when a call comes from within another or a fork, as from a handler.
int TakeTurn();
void EndTurn();

// What can happen to the process. Each is called in a turn of its own.

// The library is about to be freed, or the process to end; never called while somebody is in a
// call. There may be calls afterwards all the same.
void OnEnd();

// This process is a copy of another one, and what that one has open is open here, too.
void OnFork();

}  // namespace recordmanager
