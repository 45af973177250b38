#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>

#include <utility>

#include "worker.h"

namespace recordmanager_tests {

Worker::Worker(const std::vector<std::string>& arguments) {
  std::vector<std::string> texts{"qlx99_tests", kWorkerOption};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  argv.reserve(texts.size() + 1);
  for (std::string& text : texts) argv.push_back(text.data());
  argv.push_back(nullptr);
  pid_t pid = 0;
  if (posix_spawn(&pid, "/proc/self/exe", nullptr, nullptr, argv.data(), environ) == 0)
    process_ = pid;
}

int Worker::Wait() {
  int state = -1;
  const auto pid = static_cast<pid_t>(std::exchange(process_, 0));
  const bool ended = pid != 0 && waitpid(pid, &state, 0) == pid && WIFEXITED(state);
  return ended ? WEXITSTATUS(state) : -1;
}

void Worker::Kill() {
  if (process_ == 0) return;
  kill(static_cast<pid_t>(process_), SIGKILL);
  Wait();
}

}  // namespace recordmanager_tests
