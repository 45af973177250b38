// The windows of this process, and the queues of their messages.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "platform/windows_api.h"

namespace platform {

// The messages for the windows of one thread, which lives as long as they do.
struct MessageQueue {
  std::deque<MSG> posted;
  std::optional<int> exitCode;  // of PostQuitMessage
  HOOKPROC hook = nullptr;      // sees what is taken
};

struct Window {
  std::pair<HINSTANCE, std::string> windowClass;
  WNDPROC procedure;
  std::string title;
  HWND owner;
  MessageQueue* queue;
};

// All windows of the process and their messages. There are no others to talk to.
struct Desktop {
  std::mutex mutex;  // over everything here and every queue; never held in a call
  std::map<std::pair<HINSTANCE, std::string>, WNDCLASSA> classes;  // by names in upper case
  std::map<HWND, Window> windows;
  std::uintptr_t lastHandle = 0;  // a handle is never used twice

  // Null when there is no such window.
  Window* Find(HWND window);
};

Desktop& TheDesktop();

MessageQueue& QueueOfThisThread();

// Dispatches the pending messages for the loop of a message box or dialog. Returns false after a
// WM_QUIT, which ends that loop; it is posted again for the loop around it.
bool DispatchInModalLoop();

std::string UpperCase(LPCSTR text);

}  // namespace platform
