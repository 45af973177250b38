// The process that this program works for.
#pragma once

#include <atomic>

#include "desk.h"
#include "platform/windows_api.h"

namespace automation {

class Client {
 public:
  explicit Client(Desk& desk) : desk_(&desk) {}
  ~Client();
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  // Within a call: the one who calls is the client, unless there is one already. When its process
  // ends, so does the desk; Windows itself takes minutes to notice.
  void MeetCaller();

 private:
  static void CALLBACK EndDesk(void* desk, BOOLEAN timedOut);

  Desk* desk_;
  std::atomic<bool> isMet_ = false;
  HANDLE process_ = nullptr;
  HANDLE wait_ = nullptr;
};

}  // namespace automation
