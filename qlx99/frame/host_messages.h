// The messages of the host's thread, which go on being dispatched while the library waits for other
// programs or for its user.
#pragma once

#include "platform/windows_api.h"

namespace qlx99 {

// While it exists, a WM_QUIT that is pending on this thread, or comes, is held. Whoever takes it
// from the queue finds a message that means nothing, be it the library, the delegate, or the loop
// of a message box or dialog, which would end without an answer. When the outermost of these ends,
// the host has its WM_QUIT in the queue again. (A delegate that ended a loop of its own by a
// WM_QUIT would wait for ever; but it cannot be told whose a WM_QUIT is, and the host's is the one
// that must not be lost.)
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

// Lets a moment pass before the next look at something that changes through messages or in other
// programs: until a message comes, but a few milliseconds at most. Without it, a wait for a person
// would keep the processor busy all the time.
void AwaitHostMessage();

}  // namespace qlx99
