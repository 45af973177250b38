// The messages of the host's thread, which go on being dispatched while the library waits for other
// programs.
#pragma once

#include "platform/windows_api.h"

namespace qlx99 {

class HostMessages {
 public:
  HostMessages() = default;
  // A WM_QUIT that was taken belongs to the host, which finds it when the library returns.
  ~HostMessages();
  HostMessages(const HostMessages&) = delete;
  HostMessages& operator=(const HostMessages&) = delete;

  // Takes the pending messages of the calling thread and dispatches each, until there is none left
  // or a WM_QUIT has been taken.
  void Dispatch();

  // Lets a moment pass before the next look at something that changes through messages or in other
  // programs: until a message comes, but a few milliseconds at most. Without it, a wait for a
  // person would keep the processor busy all the time.
  void Await();

 private:
  bool quitTaken_ = false;
  int exitCode_ = 0;
};

}  // namespace qlx99
