#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>

#include <utility>

#include "host.h"
#include "support/world.h"

namespace recordmanager_tests::host {

Worker::Worker(const std::vector<std::string>& arguments) {
  std::string program = qlx99::tests::world::ProgramFolder() / "record_manager_worker";
  std::vector<std::string> texts = arguments;
  std::vector<char*> argv{program.data()};
  for (std::string& text : texts) {
    argv.push_back(text.data());
  }
  argv.push_back(nullptr);
  pid_t pid = 0;
  if (posix_spawn(&pid, program.c_str(), nullptr, nullptr, argv.data(), environ) == 0) {
    process_ = pid;
  }
}

Worker::~Worker() { Kill(); }

int Worker::Wait() {
  int state = -1;
  const auto pid = static_cast<pid_t>(std::exchange(process_, 0));
  if (pid == 0 || waitpid(pid, &state, 0) != pid || !WIFEXITED(state)) {
    return -1;
  }
  return WEXITSTATUS(state);
}

void Worker::Kill() {
  if (process_ != 0) {
    kill(static_cast<pid_t>(process_), SIGKILL);
    Wait();
  }
}

}  // namespace recordmanager_tests::host
