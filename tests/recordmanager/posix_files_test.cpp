// What can happen to files on POSIX hosts only: others rename and delete them while they are open.
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

class PosixFiles : public PartyFile {};

// Of what this process may have, until the end of the scope.
class Limit {
 public:
  Limit(int resource, rlim_t most) : resource_(resource) {
    getrlimit(resource_, &before_);
    const rlimit limit{most, before_.rlim_max};
    setrlimit(resource_, &limit);
  }
  Limit(const Limit&) = delete;
  Limit& operator=(const Limit&) = delete;
  ~Limit() { setrlimit(resource_, &before_); }

 private:
  int resource_;
  rlimit before_{};
};

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

  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder);
  EXPECT_EQ(Opened("PARTIES.KRV").Do("first, next*"), "1 2 !9");
  std::filesystem::create_directory("second");
  std::filesystem::current_path("second");
  EXPECT_EQ(Client().Open("PARTIES.KRV"), kFileNotFound);
  std::filesystem::current_path(before);
}

TEST_F(PosixFiles, AreNotOpenedWithoutFreeHandles) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  const std::string fresh = InFolder("FRESH.KRV");
  WriteAll(fresh, ReadAll(path));
  Opened(path);  // its handles are not to be had
  std::string statuses;
  for (rlim_t most = 0; !statuses.ends_with(" 0"); ++most) {
    const Limit limit(RLIMIT_NOFILE, most);
    statuses += ' ' + std::to_string(client.Open(fresh));
  }
  EXPECT_THAT(statuses, testing::MatchesRegex("( 86)+ 0"));
}

TEST_F(PosixFiles, ThatNobodyUsesKeepNoHandlesFromOthers) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  const int firstFree = dup(STDIN_FILENO);
  close(firstFree);
  const Limit limit(RLIMIT_NOFILE, static_cast<rlim_t>(firstFree) + 20);
  for (int i = 0; i < 10; ++i) {
    const std::string name = InFolder(std::to_string(i) + ".KRV");
    WriteAll(name, ReadAll(path));
    ASSERT_EQ(client.Open(name), kSuccess) << i;
    ASSERT_EQ(Create(InFolder("NEW" + std::to_string(i) + ".KRV")), kSuccess) << i;
    ASSERT_EQ(client.Do("first, close"), "1 ok");
  }
}

// A device gives back nothing of what it is given, so nothing could be taken back by it.
TEST_F(PosixFiles, BesideADeviceInPlaceOfTheirJournalAreOnlyRead) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  testkit::ReleaseEmbedded();
  WriteAll(path, InMode(kJournalled, ReadAll(path)));
  if (mknod((path + "-journal").c_str(), S_IFCHR | 0600, makedev(1, 3)) != 0) GTEST_SKIP();
  EXPECT_EQ(Opened(path).Do("insert, first, next"), "!94 1 !9");
}

// As with a spent quota.
TEST_F(PosixFiles, ThatMayNotBecomeLargerSaySo) {
  const std::string large = InFolder("LARGE.KRV");
  const KeyDescription key = DescribeKey(0, 4, kIntegerKey, kKeyDuplicates);
  ASSERT_EQ(Create(large, DescribeFile(client.length, {key})), kSuccess);
  Client& givenUp = Opened(large);
  auto* const before = std::signal(SIGXFSZ, SIG_IGN);
  {
    const Limit limit(RLIMIT_FSIZE, 100'000);
    std::string outcome = "1";
    for (int i = 0; i < 200 && !outcome.starts_with('!'); ++i) outcome = client.Do("insert");
    EXPECT_EQ(outcome, "!18");
    EXPECT_THAT(givenUp.Do("insert, begin, insert*, insert"), testing::EndsWith("!18 !18"));
  }
  // Others may write again, and the records that they are given have the numbers of those that are
  // gone.
  EXPECT_EQ(Worker(large, "insert, insert").Wait(), 0);
  EXPECT_EQ(givenUp.Do("next, first, next, end, update, next, next"), "0 0 0 !18 ok 0 !9");
  std::signal(SIGXFSZ, before);
  EXPECT_EQ(client.Do("first, next, insert, close").find('!'), std::string::npos);
  // Nor does a transaction that one file refuses change the next one.
  const std::string next = InFolder("NEXT.KRV");
  ASSERT_EQ(Create(next, DescribeFile(client.length, {key})), kSuccess);
  Client& behind = Opened(next);
  EXPECT_EQ(givenUp.Do("first, begin, delete"), "0 ok ok");
  EXPECT_EQ(behind.Do("insert"), "0");
  std::signal(SIGXFSZ, SIG_IGN);
  {
    const Limit limit(RLIMIT_FSIZE, 1);
    EXPECT_EQ(givenUp.Do("end"), "!18");
  }
  std::signal(SIGXFSZ, before);
  EXPECT_EQ(behind.Do("first"), "!9");
}

// The statuses of opening a file on a disk of its own, with blocks smaller than pages: with more
// and more room, and then with room for no more files; and of writing to one with a rollback
// journal then.
constexpr auto kOpenOnFullDisk = R"(
  truncate -s 1M disk && mkfs.ext4 -q -b 1024 -O ^has_journal disk && mkdir full || exit
  mount -o loop disk full || exit
  cp PARTIES.KRV JOURNALLED.KRV full
  status() { "$program" --worker full/${2-PARTIES.KRV} ${1-first} 1; printf ' %s' $?; }
  for room in $(seq 0 2 44); do
    dd if=/dev/zero of=full/filler bs=1k
    truncate -s -${room}k full/filler
    status
    rm full/filler full/PARTIES.KRV-*
  done > room
  i=0
  while touch full/$i; do i=$((i + 1)); done
  { status; status insert JOURNALLED.KRV; } > files
)";

// What the users of a log share is memory, and writing to memory that the disk has no room for
// would kill the process.
TEST_F(PosixFiles, OnAFullDiskOfSmallBlocksSaySo) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  testkit::ReleaseEmbedded();
  WriteAll(InFolder("JOURNALLED.KRV"), InMode(kJournalled, ReadAll(path)));
  WriteAll(InFolder("script"), kOpenOnFullDisk);
  const std::string run = "cd " + folder.string() +
                          " && program=" + testkit::ProgramPath().string() +
                          " unshare -m sh script 2> errors";
  const int end = std::system(run.c_str());
  if (!std::filesystem::exists(folder / "room")) GTEST_SKIP() << ReadAll(folder / "errors");
  EXPECT_EQ(end, 0) << ReadAll(folder / "errors");
  EXPECT_THAT(ReadAll(folder / "room"), testing::MatchesRegex(" 18( 0| 18)* 0( 0| 18)*"));
  EXPECT_EQ(ReadAll(folder / "files"), " 18 18");
}

// Files with several names: hard links, each of which would have a log of its own beside it. Other
// processes open them, as this one would know by itself that both names lead to one file.
class LinkedFiles : public PartyFile {
 protected:
  LinkedFiles() {
    EXPECT_EQ(Create(file), kSuccess);
    EXPECT_EQ(Worker(file, "insert").Wait(), 0);
    std::filesystem::create_directory(folder / "snapshot");
    std::filesystem::create_hard_link(file, other);
  }

  static bool CanBeNoted(const std::string& name) {
    return setxattr(name.c_str(), "user.note", "", 0, 0) == 0 || errno != ENOTSUP;
  }

  const std::string file = InFolder("FILE.KRV");
  const std::string other = InFolder("snapshot/FILE.KRV");
};

TEST_F(LinkedFiles, AreNotOpenedWithoutTheLogOrJournalOfTheNameThatWasUsedLast) {
  if (!CanBeNoted(file)) GTEST_SKIP() << "names cannot be noted on this file system";
  for (const char mode : {kLogged, kJournalled}) {
    WriteAll(file, InMode(mode, ReadAll(file)));
    Worker writer(file, "insert, begin, insert, hold");
    writer.Kill();
    const std::string journal = file + "-journal";
    if (mode == kJournalled) WriteAll(journal, Synchronised(ReadAll(journal)));
    EXPECT_EQ(Client().Open(other), kFileInUse);
    EXPECT_EQ(Worker(file, "last").Wait(), 0);
    EXPECT_EQ(Worker(other, "last").Wait(), 0);
  }
  EXPECT_EQ(Opened(other).Do("first, next*"), "1 2 3 !9");
}

TEST_F(LinkedFiles, AreUsedByTheNameThatIsLeft) {
  ASSERT_EQ(mkfifo((file + "-wal").c_str(), 0600), 0);  // which is no log to be missed
  std::filesystem::remove(file);
  EXPECT_EQ(Worker(other, "last, insert").Wait(), 0);
  std::filesystem::remove(file + "-wal");
  std::filesystem::copy_file(other, file);
  EXPECT_EQ(Worker(file, "last, insert").Wait(), 0) << "a file of its own";
  EXPECT_EQ(Opened(file).Do("first, next*"), "1 2 3 !9");
  EXPECT_EQ(Opened(other).Do("first, next*"), "1 2 !9");
}

TEST_F(LinkedFiles, AreNotOpenedWithoutTheLogThatTheyWereMovedAwayFrom) {
  if (!CanBeNoted(file)) GTEST_SKIP() << "names cannot be noted on this file system";
  std::filesystem::remove(other);
  Worker writer(file, "insert, hold");
  std::filesystem::rename(file, other);
  writer.Kill();
  EXPECT_EQ(Client().Open(other), kFileInUse);
  std::filesystem::rename(other, file);
  EXPECT_EQ(Worker(file, "last").Wait(), 0);
  std::filesystem::rename(file, other);
  EXPECT_EQ(Opened(other).Do("first, next*"), "1 2 !9");
}

}  // namespace
}  // namespace recordmanager_tests
