#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <thread>

#include "testkit/process.h"

namespace {

bool isCopy = false;

}  // namespace

// Asked by LeakSanitizer. What the record manager has inherited it neither closes nor gives back.
// NOLINTNEXTLINE(bugprone-reserved-identifier, readability-identifier-naming): its name
extern "C" int __lsan_is_turned_off() { return isCopy ? 1 : 0; }

namespace testkit {

std::filesystem::path ProgramPath() { return std::filesystem::read_symlink("/proc/self/exe"); }

std::string LibraryFile(const std::string& name) { return "lib" + name + ".so"; }

Process::Process(const std::vector<std::string>& arguments) {
  std::string program = ProgramPath();
  std::vector<std::string> texts = arguments;
  std::vector<char*> argv{program.data()};
  for (std::string& text : texts) argv.push_back(text.data());
  argv.push_back(nullptr);
  pid_t pid = 0;
  if (posix_spawn(&pid, program.c_str(), nullptr, nullptr, argv.data(), environ) == 0) {
    process_ = pid;
  }
}

int Process::Wait(std::chrono::milliseconds most) {
  constexpr std::chrono::milliseconds kPause{1};
  const auto pid = static_cast<pid_t>(process_);
  int state = 0;
  pid_t ended = pid == 0 ? -1 : waitpid(pid, &state, WNOHANG);
  for (; ended == 0 && most.count() > 0; most -= kPause) {
    std::this_thread::sleep_for(kPause);
    ended = waitpid(pid, &state, WNOHANG);
  }
  if (ended == 0) Kill();
  process_ = 0;
  if (ended <= 0) return kCrashed;
  if (WIFEXITED(state)) return WEXITSTATUS(state);
  return WTERMSIG(state) == SIGKILL ? kKilled : kCrashed;
}

int Process::Kill() {
  if (process_ != 0) kill(static_cast<pid_t>(process_), SIGKILL);
  return Wait();
}

std::optional<bool> Fork() {
  const bool isChild = fork() == 0;
  isCopy = isCopy || isChild;
  return isChild;
}

void UsePrivateRegistry(const std::filesystem::path& folder) {
  setenv("QLX99_REGISTRY", (folder / "office.reg").c_str(), 1);
}

void DropPrivateRegistry() { unsetenv("QLX99_REGISTRY"); }

}  // namespace testkit
