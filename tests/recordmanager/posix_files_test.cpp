// What can happen to files on POSIX hosts only: others rename and delete them while they are open,
// and processes are copied with what they have open.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <optional>

#include "party_file.h"
#include "worker.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

class PosixFiles : public PartyFile {};

TEST_F(PosixFiles, ThatHaveGoneOrWereReplacedAreNoticed) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  const std::string saved = InFolder("SAVED.KRV");
  std::filesystem::rename(path, saved);
  EXPECT_EQ(client.Open(path), kFileNotFound);

  ASSERT_EQ(Create(InFolder("OTHER.KRV")), kSuccess);
  std::filesystem::rename(InFolder("OTHER.KRV"), path);
  EXPECT_EQ(Opened(path).Do("first, insert, insert, close"), "!9 1 2 ok");

  std::filesystem::rename(saved, path);
  EXPECT_EQ(Opened(path).Do("first, next"), "1 !9");
}

TEST_F(PosixFiles, ThatHaveMovedInATransactionAreNotForgotten) {
  Client& other = Opened(path);
  EXPECT_EQ(client.Do("insert, begin, insert, close"), "1 ok 2 ok");
  EXPECT_EQ(other.Do("close"), "ok");
  const std::string moved = InFolder("MOVED.KRV");
  std::filesystem::rename(path, moved);
  EXPECT_EQ(client.Open(moved), kFileInUse);
  EXPECT_EQ(client.Do("end"), "ok");
  EXPECT_EQ(Opened(moved).Do("first, next*"), "1 2 !9");
}

TEST_F(PosixFiles, AreTheSameByEveryPath) {
  const std::string link = InFolder("LINK.KRV");
  std::filesystem::create_symlink(path, link);
  Client& other = Opened(link);
  EXPECT_EQ(client.Do("begin, insert"), "ok 1");
  EXPECT_EQ(other.Do("insert"), "2") << "not a second database that waits for the first";
  EXPECT_EQ(client.Do("end"), "ok");
  EXPECT_EQ(other.Do("first, next*"), "1 2 !9");
}

TEST_F(PosixFiles, OfTheSameNameInTwoFoldersAreKeptApart) {
  const auto before = std::filesystem::current_path();
  std::filesystem::create_directory(folder / "second");
  std::filesystem::current_path(folder);
  EXPECT_EQ(Opened("PARTIES.KRV").Do("insert"), "1");
  std::filesystem::current_path(folder / "second");
  EXPECT_EQ(Client().Open("PARTIES.KRV"), kFileNotFound);
  EXPECT_EQ(Create("PARTIES.KRV"), kSuccess);
  EXPECT_EQ(Opened("PARTIES.KRV").Do("first"), "!9");
  std::filesystem::current_path(before);
  EXPECT_EQ(client.Do("first, next"), "1 !9");
}

// If both drew the same random numbers, each would take the other's draft for its own.
TEST_F(PosixFiles, AreCreatedByAProcessAndItsCopyAtTheSameTime) {
  EXPECT_EQ(client.Do("close"), "ok");
  for (int round = 0; round < 50; ++round) {
    const pid_t child = fork();
    const int status = Create(InFolder(child == 0 ? "CHILDS.KRV" : "PARENTS.KRV"));
    if (child == 0) _exit(status);
    int end = 0;
    waitpid(child, &end, 0);
    ASSERT_EQ(status, kSuccess);
    ASSERT_EQ(end, 0) << "round " << round;
  }
}

// Keeps whoever opens a file waiting within that call, with the file that he has found.
class Delay {
 public:
  explicit Delay(const std::string& path) : file_(open(path.c_str(), O_RDONLY)) {
    std::signal(SIGIO, SIG_IGN);  // which tells that somebody waits
    EXPECT_EQ(fcntl(file_, F_SETLEASE, F_RDLCK), 0);
  }
  Delay(const Delay&) = delete;
  Delay& operator=(const Delay&) = delete;
  ~Delay() {
    fcntl(file_, F_SETLEASE, F_UNLCK);  // which a child process would keep
    close(file_);
  }

  void WaitForSomebody() const {
    while (fcntl(file_, F_GETLEASE) == F_RDLCK) usleep(1000);
  }

 private:
  int file_;
};

TEST_F(PosixFiles, AreLeftAloneByWhoeverComesFromAFileThatTheyHaveReplaced) {
  for (const bool creates : {false, true}) {
    const std::string name = InFolder(creates ? "CREATED.KRV" : "OPENED.KRV");
    ASSERT_EQ(Create(name), kSuccess);
    ASSERT_EQ(Create(InFolder("NEW.KRV")), kSuccess);
    std::optional<Delay> delay(name);
    const pid_t late = fork();
    if (late == 0) _exit(creates ? Create(name) : Client().Open(name));
    delay->WaitForSomebody();
    std::filesystem::rename(InFolder("NEW.KRV"), name);
    EXPECT_EQ(Opened(name).Do("insert"), "1");
    delay.reset();
    int end = 0;
    waitpid(late, &end, 0);
    EXPECT_EQ(WEXITSTATUS(end), kFileInUse) << name;
    EXPECT_EQ(Worker({name, "first"}).Wait(), 0) << name;
  }
}

TEST_F(PosixFiles, AreNotOpenedWithoutFreeHandles) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  const std::string fresh = InFolder("FRESH.KRV");
  client.key = {};
  WriteAll(fresh, ReadAll(path));
  Opened(path);  // its handles are not to be had
  fresh.copy(client.key.data(), client.key.size());
  BtrCall* const call = qlx99::tests::EmbeddedCall();
  std::vector<int> taken;
  for (int handle = 0; handle >= 0; handle = dup(STDIN_FILENO)) taken.push_back(handle);
  std::string statuses;
  for (int status = -1; status != kSuccess && taken.size() > 1; taken.pop_back()) {
    status = call(kOpen, client.block.data(), nullptr, nullptr, client.key.data(), kMaxKeyLength,
                  kOpenNormal);
    statuses += std::to_string(status) + ' ';
    close(taken.back());
  }
  for (std::size_t i = 1; i < taken.size(); ++i) close(taken[i]);
  EXPECT_THAT(statuses, testing::MatchesRegex("(86 )+0 "));
}

// How many handles this process may have, until the end of the scope.
class HandleLimit {
 public:
  explicit HandleLimit(rlim_t most) {
    getrlimit(RLIMIT_NOFILE, &before_);
    const rlimit limit{most, before_.rlim_max};
    setrlimit(RLIMIT_NOFILE, &limit);
  }
  HandleLimit(const HandleLimit&) = delete;
  HandleLimit& operator=(const HandleLimit&) = delete;
  ~HandleLimit() { setrlimit(RLIMIT_NOFILE, &before_); }

 private:
  rlimit before_{};
};

TEST_F(PosixFiles, ThatNobodyUsesKeepNoHandlesFromOthers) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  const int firstFree = dup(STDIN_FILENO);
  close(firstFree);
  const HandleLimit limit(static_cast<rlim_t>(firstFree) + 20);
  for (int i = 0; i < 10; ++i) {
    const std::string name = InFolder(std::to_string(i) + ".KRV");
    WriteAll(name, ReadAll(path));
    ASSERT_EQ(client.Open(name), kSuccess) << i;
    ASSERT_EQ(Create(InFolder("NEW" + std::to_string(i) + ".KRV")), kSuccess) << i;
    ASSERT_EQ(client.Do("first, close"), "1 ok");
  }
}

TEST_F(PosixFiles, AreStillOpenInACopyOfTheProcessThatLacksHandlesAtFirst) {
  EXPECT_EQ(client.Do("insert, insert, first"), "1 2 1");
  const pid_t child = fork();
  if (child == 0) {
    std::string said;
    {
      const HandleLimit limit(0);
      said = client.Do("next, begin, first, end, update") + ' ';
    }
    said += client.Do("next, update, close");
    _exit(said == "!86 ok !86 ok !86 2 ok ok" ? 0 : 1);
  }
  int end = 0;
  waitpid(child, &end, 0);
  EXPECT_EQ(WEXITSTATUS(end), 0);
  EXPECT_EQ(client.Do("next, close"), "2 ok");
}

}  // namespace
}  // namespace recordmanager_tests
