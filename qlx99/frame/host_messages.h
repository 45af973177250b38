// The messages of the host's thread, which go on being dispatched while the library waits for other
// programs or for its user.
#pragma once

#include "platform/windows_api.h"

namespace qlx99 {

// Saves the host's WM_QUIT. A message box or dialog that took it would end without an answer. While
// this exists, whoever takes a WM_QUIT from the thread's queue finds a WM_NULL in its place. When
// the outermost of these ends, the WM_QUIT is in the queue again. (A sibling library that ended a
// loop of its own by a WM_QUIT would wait for ever. But nobody can tell whose a WM_QUIT is, and the
// host's must not be lost.)
class HeldQuit {
 public:
  HeldQuit();
  ~HeldQuit();
  HeldQuit(const HeldQuit&) = delete;
  HeldQuit& operator=(const HeldQuit&) = delete;
};

// Takes the pending messages of the calling thread and dispatches each, until there is none left or
// a WM_QUIT has been taken. Within a HeldQuit.
void DispatchHostMessages();

// Waits until a message comes, but a few milliseconds at most. A loop that waits for a person calls
// it between two looks, or it would keep the processor busy.
void AwaitHostMessage();

}  // namespace qlx99
