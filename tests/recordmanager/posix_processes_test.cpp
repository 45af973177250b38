// What can happen to processes on POSIX hosts only: they are copied with what they have open, and
// their calls are interrupted.
#include <fcntl.h>
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <thread>

#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

class PosixProcesses : public PartyFile {};

int ExitCodeOf(pid_t child) {
  int end = 0;
  waitpid(child, &end, 0);
  return WIFEXITED(end) ? WEXITSTATUS(end) : -1;
}

// Whoever opens a file with a lease on it waits until that has ended.
TEST_F(PosixProcesses, EndACanceledThreadOnlyAfterItsCall) {
  std::signal(SIGIO, SIG_IGN);  // which tells that somebody waits
  for (const int type : {PTHREAD_CANCEL_DEFERRED, PTHREAD_CANCEL_ASYNCHRONOUS}) {
    const std::string name = InFolder(std::to_string(type) + ".KRV");
    ASSERT_EQ(Create(name), kSuccess);
    Client canceled;
    const int leased = open(name.c_str(), O_RDONLY);
    EXPECT_EQ(fcntl(leased, F_SETLEASE, F_RDLCK), 0);
    std::thread thread([&] {
      pthread_setcanceltype(type, nullptr);
      static_cast<void>(canceled.Open(name));
    });
    while (fcntl(leased, F_GETLEASE) == F_RDLCK) usleep(1000);
    pthread_cancel(thread.native_handle());
    close(leased);
    thread.join();
    EXPECT_EQ(canceled.Do("insert, close"), "1 ok");
  }
}

// As by a signal's handler.
TEST_F(PosixProcesses, RefuseACallWithinACall) {
  static Client* handlers = nullptr;
  handlers = &client;
  static int leased = -1;
  static int status = 0;
  const std::string other = InFolder("OTHER.KRV");
  ASSERT_EQ(Create(other), kSuccess);
  const pid_t child = fork();
  if (child == 0) {
    alarm(20);
    std::signal(SIGIO, [](int) {
      status = handlers->Call(kGetFirst, 0);
      fcntl(leased, F_SETLEASE, F_UNLCK);
    });
    leased = open(other.c_str(), O_RDONLY);
    fcntl(leased, F_SETLEASE, F_RDLCK);
    _exit(Client().Open(other) == kSuccess ? status : 1);
  }
  EXPECT_EQ(ExitCodeOf(child), kFileInUse);
}

// Handlers that are older than the library are called within its own.
TEST_F(PosixProcesses, RefuseACallWithinAFork) {
  static Client* handlers = nullptr;
  handlers = &client;
  static std::string statuses;
  const pid_t child = fork();
  if (child == 0) {
    alarm(20);
    const auto call = [] { statuses += std::to_string(handlers->Call(kGetFirst, 0)) + ' '; };
    testkit::ReleaseEmbedded();
    pthread_atfork(call, call, call);
    testkit::EmbeddedCallId();
    const pid_t copy = fork();
    const bool areRefused = statuses == "85 85 ";
    if (copy == 0) _exit(areRefused ? Client().Open(path) : 1);
    _exit(areRefused ? ExitCodeOf(copy) : 1);
  }
  EXPECT_EQ(ExitCodeOf(child), kSuccess);
}

// The copy has only the thread that made it; of the other it would have a call without an end.
TEST_F(PosixProcesses, MayBeCopiedDuringTheirFirstCalls) {
  static std::atomic<int> calls = -1;  // -1: not yet
  const pid_t child = fork();
  if (child == 0) {
    testkit::ReleaseEmbedded();
    testkit::EmbeddedCallId();  // only loaded
    std::thread([this] {
      while (calls < 0) continue;
      for (Client other;; ++calls) static_cast<void>(other.Open(path));
    }).detach();
    pthread_atfork(
        [] {
          calls = 0;
          while (calls == 0) continue;
        },
        nullptr, nullptr);
    const pid_t copy = fork();
    alarm(20);
    _exit(copy == 0 ? Client().Open(path) : ExitCodeOf(copy));
  }
  EXPECT_EQ(ExitCodeOf(child), kSuccess);
}

// If both drew the same random numbers, each would take the other's draft for its own.
TEST_F(PosixProcesses, CreateFilesAtTheSameTimeAsTheirCopies) {
  EXPECT_EQ(client.Do("close"), "ok");
  for (int round = 0; round < 50; ++round) {
    const pid_t child = fork();
    const int status = Create(InFolder(child == 0 ? "CHILDS.KRV" : "PARENTS.KRV"));
    if (child == 0) _exit(status);
    ASSERT_EQ(ExitCodeOf(child), kSuccess) << "round " << round;
    ASSERT_EQ(status, kSuccess);
  }
}

TEST_F(PosixProcesses, LeaveAFileAloneThatHasReplacedTheirs) {
  std::signal(SIGIO, SIG_IGN);  // which tells that somebody waits
  for (const bool creates : {false, true}) {
    const std::string name = InFolder(creates ? "CREATED.KRV" : "OPENED.KRV");
    ASSERT_EQ(Create(name), kSuccess);
    ASSERT_EQ(Create(InFolder("NEW.KRV")), kSuccess);
    // Whoever opens the file waits within that call until the lease ends, with what he has found.
    const int leased = open(name.c_str(), O_RDONLY);
    EXPECT_EQ(fcntl(leased, F_SETLEASE, F_RDLCK), 0);
    const pid_t late = fork();
    if (late == 0) _exit(creates ? Create(name) : Client().Open(name));
    while (fcntl(leased, F_GETLEASE) == F_RDLCK) usleep(1000);
    std::filesystem::rename(InFolder("NEW.KRV"), name);
    EXPECT_EQ(Opened(name).Do("insert"), "1");
    fcntl(leased, F_SETLEASE, F_UNLCK);  // which the child process would keep
    close(leased);
    EXPECT_EQ(ExitCodeOf(late), kFileInUse) << name;
    EXPECT_EQ(Worker(name, "first").Wait(), 0) << name;
  }
}

}  // namespace
}  // namespace recordmanager_tests
