// What can happen to files on POSIX hosts only: others rename and delete them while they are open,
// and processes are copied with what they have open.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
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

TEST_F(PosixFiles, AreNotOpenedWithoutFreeHandles) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  const std::string fresh = InFolder("FRESH.KRV");
  client.key = {};
  WriteAll(fresh, ReadAll(path));
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

// As a reader does who is in the midst of a call.
class ReaderInACall {
 public:
  explicit ReaderInACall(const std::string& path) : index_(open((path + "-shm").c_str(), O_RDWR)) {
    Lock(F_RDLCK);
  }
  ReaderInACall(const ReaderInACall&) = delete;
  ReaderInACall& operator=(const ReaderInACall&) = delete;
  ~ReaderInACall() { close(index_); }

  void Return() const { Lock(F_UNLCK); }

 private:
  void Lock(int type) const {
    constexpr off_t kReadLocks = 123;
    struct flock lock {};
    lock.l_type = static_cast<short>(type);
    lock.l_start = kReadLocks;
    lock.l_len = 5;
    EXPECT_EQ(fcntl(index_, F_OFD_SETLK, &lock), 0);
  }

  int index_;
};

TEST_F(PosixFiles, AreCompleteAfterTheNextUseWhenSomebodyReadAtTheLastClose) {
  EXPECT_EQ(client.Do("insert, first"), "1 1");
  const ReaderInACall reader(path);
  EXPECT_EQ(client.Do("insert, close"), "2 ok");
  EXPECT_NE(std::filesystem::file_size(path + "-wal"), 0);
  reader.Return();
  EXPECT_EQ(Worker({path, "first"}).Wait(), 0);
  EXPECT_EQ(std::filesystem::file_size(path + "-wal"), 0);
  std::filesystem::copy_file(path, InFolder("COPY.KRV"));
  EXPECT_EQ(Opened(InFolder("COPY.KRV")).Do("first, next*"), "1 2 !9");
}

// A parent with a file open and a transaction, which ends before its child works on.
void ActAsParentAndChild(const std::string& path, const std::array<int, 2>& outcome) {
  std::array<int, 2> end{};
  if (pipe(end.data()) != 0) _exit(1);
  Client client;
  client.Open(path);
  client.Do("insert case=7, begin, insert case=8");
  if (fork() != 0) {
    qlx99::tests::ReleaseEmbedded();
    _exit(0);
  }
  close(end[1]);
  char byte = 0;
  while (read(end[0], &byte, 1) > 0) continue;
  const std::string done = client.Do("end, update, equal case=7, update rank=1, insert, insert");
  const auto written = write(outcome[1], done.data(), done.size());
  qlx99::tests::ReleaseEmbedded();
  _exit(written > 0 ? 0 : 1);
}

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

TEST_F(PosixFiles, AreOpenedAnewInAProcessThatIsACopy) {
  EXPECT_EQ(client.Do("close"), "ok");
  qlx99::tests::ReleaseEmbedded();
  std::array<int, 2> outcome{};
  ASSERT_EQ(pipe(outcome.data()), 0);
  if (const pid_t parent = fork(); parent != 0) {
    waitpid(parent, nullptr, 0);
  } else {
    ActAsParentAndChild(path, outcome);
  }
  close(outcome[1]);
  std::string done(100, '\0');
  done.resize(static_cast<std::size_t>(std::max<ssize_t>(read(outcome[0], done.data(), 100), 0)));
  close(outcome[0]);
  EXPECT_EQ(done, "!39 !80 1 ok 2 3");
  EXPECT_EQ(Opened(path).Do("first, next*"), "1 2 3 !9");
}

// If both drew the same random numbers, each would take the other's draft for its own.
TEST_F(PosixFiles, AreDraftedByAParentAndItsChildUnderNamesOfTheirOwn) {
  EXPECT_EQ(client.Do("close"), "ok");
  const int watch = inotify_init1(IN_NONBLOCK);
  inotify_add_watch(watch, folder.c_str(), IN_CREATE);
  const pid_t child = fork();
  if (child == 0) _exit(Create(InFolder("CHILD.KRV")));
  waitpid(child, nullptr, 0);
  EXPECT_EQ(Create(InFolder("PARENT.KRV")), kSuccess);
  alignas(inotify_event) std::array<char, 4096> events{};
  const ssize_t size = read(watch, events.data(), events.size());
  close(watch);
  std::set<std::string> drafts;
  for (ssize_t i = 0; i < size;) {
    const auto* event = reinterpret_cast<const inotify_event*>(events.data() + i);
    const std::string name = event->name;
    if (name.ends_with("-journal")) drafts.insert(name);
    i += static_cast<ssize_t>(sizeof *event + event->len);
  }
  EXPECT_EQ(drafts.size(), 2);
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

}  // namespace
}  // namespace recordmanager_tests
