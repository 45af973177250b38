// The windows of this process, and the queues of their messages.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "platform/windows_api.h"

namespace platform {

// On its way to a window of another thread. It lives with its sender, who waits for the answer.
struct SentMessage {
  MSG message;
  LRESULT answer = 0;
  bool isAnswered = false;
};

// The messages for the windows of one thread.
struct MessageQueue {
  std::deque<MSG> posted;
  std::deque<SentMessage*> sent;
  std::optional<int> exitCode;  // of PostQuitMessage
  HOOKPROC hook = nullptr;      // sees what is taken
  bool isIdle = false;          // its thread has waited for a message, or has ended
};

struct Window {
  std::pair<HINSTANCE, std::string> windowClass;
  WNDPROC procedure;
  std::string title;
  HWND owner;
  std::shared_ptr<MessageQueue> queue;
};

// All windows of the process and their messages. Programs that talk through windows run within the
// process here, each on a thread of its own, so there is nobody else to talk to.
struct Desktop {
  std::mutex mutex;                 // over everything here and every queue; never held in a call
  std::condition_variable changed;  // a queue or an answer
  std::map<std::pair<HINSTANCE, std::string>, WNDCLASSA> classes;  // by names in upper case
  std::map<HWND, Window> windows;
  std::uintptr_t lastHandle = 0;  // a handle is never used twice

  // Null when there is no such window.
  Window* Find(HWND window);
};

Desktop& TheDesktop();

const std::shared_ptr<MessageQueue>& QueueOfThisThread();

// For a new thread, whose starter wants to know its queue.
void AdoptQueue(std::shared_ptr<MessageQueue> queue);

// Called when a thread ends: destroys its windows, and releases who waits for their answers.
void RetireQueue(MessageQueue& queue);

// Dispatches the pending messages for the loop of a message box or dialog. Returns false after a
// WM_QUIT, which ends that loop; it is posted again for the loop around it.
bool DispatchInModalLoop();

std::string UpperCase(LPCSTR text);

}  // namespace platform
