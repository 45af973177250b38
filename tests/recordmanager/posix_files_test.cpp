// What can happen to files on POSIX hosts only: others rename and delete them while they are open,
// and processes are copied with what they have open.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <optional>

#include "party_file.h"

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

// As when a backup is put back while a program that has been forgotten is still running.
TEST_F(PosixFiles, ThatHaveTheLogOfAReplacedOneKeepIt) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  const std::string saved = InFolder("SAVED.KRV");
  const std::string away = InFolder("AWAY.KRV");
  Client& forgotten = Opened(path);
  std::filesystem::copy_file(path, saved);
  std::filesystem::rename(path, away);
  std::filesystem::rename(saved, path);
  Worker writer(path, "insert, hold");
  EXPECT_EQ(forgotten.Do("insert, close"), "!85 ok");
  writer.GoOn();
  EXPECT_EQ(writer.Wait(), 0);
  EXPECT_EQ(Opened(path).Do("first, next*"), "1 2 !9");
  EXPECT_EQ(Opened(away).Do("first, next*"), "1 !9");
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
    EXPECT_EQ(Worker(name, "first").Wait(), 0) << name;
  }
}

TEST_F(PosixFiles, AreNotOpenedWithoutFreeHandles) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  const std::string fresh = InFolder("FRESH.KRV");
  client.key = {};
  WriteAll(fresh, ReadAll(path));
  Opened(path);  // its handles are not to be had
  fresh.copy(client.key.data(), client.key.size());
  BtrCall* const call = testkit::EmbeddedCall();
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

// A device gives back nothing of what it is given, so nothing could be taken back by it.
TEST_F(PosixFiles, BesideADeviceInPlaceOfTheirJournalAreOnlyRead) {
  constexpr int kJournalModes = 18;  // two bytes of SQLite's header
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  testkit::ReleaseEmbedded();
  WriteAll(path, ReadAll(path).replace(kJournalModes, 2, "\1\1"));
  if (mknod((path + "-journal").c_str(), S_IFCHR | 0600, makedev(1, 3)) != 0) GTEST_SKIP();
  EXPECT_EQ(Opened(path).Do("insert, first, next"), "!94 1 !9");
}

TEST_F(PosixFiles, ThatMayNotBecomeLargerSaySo) {
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small{100'000, limit.rlim_max};
  auto* const before = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  std::string outcomes;
  while (outcomes.size() < 1000 && outcomes.find('!') == std::string::npos) {
    outcomes += client.Do("insert") + ' ';
  }
  EXPECT_THAT(outcomes, testing::MatchesRegex("1 2 .*!18 "));
  const std::string large = InFolder("LARGE.KRV");
  const KeyDescription key = DescribeKey(0, 4, kIntegerKey, kKeyDuplicates);
  ASSERT_EQ(Create(large, DescribeFile(client.length, {key})), kSuccess);
  Client& givenUp = Opened(large);
  EXPECT_THAT(givenUp.Do("insert, begin, insert*, insert"), testing::EndsWith("!18 !18"));
  setrlimit(RLIMIT_FSIZE, &limit);
  // Others may write again, and the records that they are given have the numbers of those that are
  // gone.
  EXPECT_EQ(Worker(large, "insert, insert").Wait(), 0);
  EXPECT_EQ(givenUp.Do("next, first, next, end, update, next, next"), "0 0 0 !18 ok 0 !9");
  std::signal(SIGXFSZ, before);
  EXPECT_EQ(client.Do("first, next, insert, close").find('!'), std::string::npos);
}

// Makes the folder a disk of its own, until this process ends, with blocks smaller than pages.
bool Mount(const std::string& folder) {
  const std::string disk = folder + ".disk";
  const std::string make = "mount --make-rprivate / && truncate -s 1M " + disk +
                           " && mkfs.ext4 -q -b 1024 -O ^has_journal " + disk + " && mkdir " +
                           folder + " && mount -o loop " + disk + ' ' + folder;
  return unshare(CLONE_NEWNS) == 0 &&
         std::system(("{ " + make + "; } > /dev/null 2>&1").c_str()) == 0;
}

// Leaves so much room on the disk.
void Fill(const std::string& filler, off_t room) {
  const std::string bytes(1024, 'x');
  const int file = open(filler.c_str(), O_RDWR | O_CREAT, 0600);
  off_t size = 0;
  while (write(file, bytes.data(), bytes.size()) > 0) size += std::ssize(bytes);
  EXPECT_EQ(ftruncate(file, size - room), 0);
  close(file);
}

// The statuses of opening the file, with more and more room.
std::string StatusesOnFullDisk(const std::string& file, const std::string& filler) {
  std::string statuses;
  for (off_t room = 0; room < 20; ++room) {
    Fill(filler, room * 1024);
    statuses += std::to_string(Client().Open(file)) + ' ';
    testkit::ReleaseEmbedded();
    std::filesystem::remove(filler);
  }
  return statuses;
}

// Of a disk that has room, but for no more files.
void ExpectNoMoreFiles(const std::string& file) {
  for (int fillers = 0; std::ofstream(file + std::to_string(fillers));) ++fillers;
  EXPECT_EQ(Client().Open(file), kDiskFull);
  EXPECT_EQ(Create(file + ".NEW"), kDiskFull);
}

// What the users of a log share is memory, and writing to memory that the disk has no room for
// would kill the process.
TEST_F(PosixFiles, OnAFullDiskOfSmallBlocksSaySo) {
  constexpr int kNoMount = 77;
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  const std::string disk = InFolder("disk");
  const pid_t child = fork();
  if (child == 0) {
    if (!Mount(disk)) _exit(kNoMount);
    std::filesystem::copy_file(path, disk + "/FILE.KRV");
    const std::string statuses = StatusesOnFullDisk(disk + "/FILE.KRV", disk + "/filler");
    EXPECT_THAT(statuses, testing::MatchesRegex("18 ((0|18) )*0 ((0|18) )*"));
    std::filesystem::copy_file(path, disk + "/OTHER.KRV");
    ExpectNoMoreFiles(disk + "/OTHER.KRV");
    _exit(HasFailure() ? 1 : 0);
  }
  int end = 0;
  waitpid(child, &end, 0);
  if (WIFEXITED(end) && WEXITSTATUS(end) == kNoMount) GTEST_SKIP() << "may not mount a disk";
  EXPECT_EQ(end, 0);
}

}  // namespace
}  // namespace recordmanager_tests
