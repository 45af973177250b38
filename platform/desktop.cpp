#include "platform/desktop.h"

#include <algorithm>
#include <cctype>

namespace platform {

namespace {

class ThreadsQueue {
 public:
  ThreadsQueue() = default;
  ~ThreadsQueue() { RetireQueue(*queue); }
  ThreadsQueue(const ThreadsQueue&) = delete;
  ThreadsQueue& operator=(const ThreadsQueue&) = delete;

  std::shared_ptr<MessageQueue> queue = std::make_shared<MessageQueue>();
};

thread_local ThreadsQueue threadsQueue;

}  // namespace

Window* Desktop::Find(HWND window) {
  const auto found = windows.find(window);
  return found == windows.end() ? nullptr : &found->second;
}

// Never destroyed: libraries may still close their windows while the process ends.
Desktop& TheDesktop() {
  static auto& desktop = *new Desktop;
  return desktop;
}

const std::shared_ptr<MessageQueue>& QueueOfThisThread() { return threadsQueue.queue; }

void AdoptQueue(std::shared_ptr<MessageQueue> queue) { threadsQueue.queue = std::move(queue); }

void RetireQueue(MessageQueue& queue) {
  Desktop& desktop = TheDesktop();
  const std::lock_guard lock(desktop.mutex);
  std::erase_if(desktop.windows, [&](const auto& one) { return one.second.queue.get() == &queue; });
  for (SentMessage* sent : std::exchange(queue.sent, {})) sent->isAnswered = true;
  queue.isIdle = true;
  desktop.changed.notify_all();
}

std::string UpperCase(LPCSTR text) {
  std::string upper = text == nullptr ? "" : text;
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return upper;
}

}  // namespace platform
