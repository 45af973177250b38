// Files that somebody may not write, or in whose folder he may make none.
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

#include "party_file.h"
#include "worker.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;
using std::filesystem::perms;

class ProtectedFiles : public PartyFile {
 protected:
  // Whom the rights on files concern.
  static void BecomeOrdinaryUser(uid_t user = 65534) {
    EXPECT_TRUE(geteuid() != 0 || seteuid(user) == 0);
  }
  static void BecomeOneselfAgain() { EXPECT_EQ(seteuid(getuid()), 0); }
  static std::string DoAsOrdinaryUser(Client& one, const std::string& script) {
    BecomeOrdinaryUser();
    std::string outcomes = one.Do(script);
    BecomeOneselfAgain();
    return outcomes;
  }
  void TearDown() override { BecomeOneselfAgain(); }
};

TEST_F(ProtectedFiles, ThatMayNotBeWrittenAreRefused) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  const std::filesystem::path closed = folder / "closed";
  const std::string file = InFolder("FILE.KRV");
  std::filesystem::create_directory(closed);
  std::filesystem::copy_file(path, file);
  std::filesystem::copy_file(path, closed / "FILE.KRV");
  std::filesystem::permissions(folder, perms::all);
  std::filesystem::permissions(file, perms{0444});
  std::filesystem::permissions(closed / "FILE.KRV", perms::all);
  std::filesystem::permissions(closed, perms{0555});
  BecomeOrdinaryUser();
  EXPECT_EQ(Client().Open(file), kPermissionError);
  EXPECT_EQ(Client().Open(closed / "FILE.KRV"), kPermissionError);
  EXPECT_EQ(Opened(closed / "FILE.KRV", kOpenReadOnly).Do("first, next, insert, close"),
            "1 !9 !46 ok");
  EXPECT_EQ(Create(file), kPermissionError);
  EXPECT_EQ(Create(closed / "NEW.KRV"), kPermissionError);
  EXPECT_EQ(Opened(file, kOpenReadOnly).Do("first, next, close"), "1 !9 ok");
  BecomeOneselfAgain();
  std::filesystem::permissions(closed, perms::all);  // or nobody could remove it
  // With a log that cannot be played in there, the file is not read without it.
  WriteAll(closed / "FILE.KRV-wal", std::string(5000, 'x'));
  std::filesystem::permissions(closed, perms{0555});
  BecomeOrdinaryUser();
  EXPECT_EQ(Client().Open(closed / "FILE.KRV", kOpenReadOnly), kPermissionError);
  BecomeOneselfAgain();
  std::filesystem::permissions(closed, perms::all);
}

TEST_F(ProtectedFiles, ThatMayNotBeWrittenAreReadBesideWhoMay) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  const std::string file = InFolder("FILE.KRV");
  const std::string flag = InFolder("flag");
  std::filesystem::copy_file(path, file);
  std::filesystem::permissions(file, perms{0644});
  std::filesystem::permissions(folder, perms{0755});
  Worker writer({file, "wait " + flag + ", insert, wait " + flag});
  WaitUntilHeld(flag);
  BecomeOrdinaryUser();
  Client& reader = Opened(file, kOpenReadOnly);
  EXPECT_EQ(reader.Do("first, next"), "1 !9");
  BecomeOneselfAgain();
  std::filesystem::remove(flag);
  WaitUntilHeld(flag);
  EXPECT_EQ(reader.Do("first, next*"), "1 2 !9");
  EXPECT_EQ(writer.Kill(), Worker::kKilled);
}

TEST_F(ProtectedFiles, AreReadWithAllThatOthersWriteWhoCameLater) {
  EXPECT_EQ(client.Do("insert case=7, close"), "1 ok");
  const std::string file = InFolder("FILE.KRV");
  const std::string flag = InFolder("flag");
  std::filesystem::copy_file(path, file);
  std::filesystem::permissions(file, perms{0644});
  std::filesystem::permissions(folder, perms{0755});
  BecomeOrdinaryUser();
  Client& reader = Opened(file, kOpenReadOnly);
  EXPECT_EQ(reader.Do("first, next, first"), "1 !9 1");
  BecomeOneselfAgain();
  EXPECT_EQ(Worker({file, "insert case=7"}).Wait(), 0);
  EXPECT_FALSE(std::filesystem::exists(file + "-wal")) << "has come and gone";
  EXPECT_EQ(DoAsOrdinaryUser(reader, "next, next, equal case=7"), "2 !9 1");
  EXPECT_EQ(Worker({file, "insert case=7"}).Wait(), 0);
  reader.length = 1024;
  EXPECT_EQ(DoAsOrdinaryUser(reader, "stat"), "ok");
  EXPECT_EQ(reader.record.at(offsetof(FileDescription, recordCount)), 3);
  Worker writer({file, "insert, wait " + flag + ", insert"});
  WaitUntilHeld(flag);
  EXPECT_EQ(DoAsOrdinaryUser(reader, "equal case=7, next* case, last"), "1 2 3 !9 4");
  std::filesystem::remove(flag);
  EXPECT_EQ(writer.Wait(), 0);
  EXPECT_EQ(DoAsOrdinaryUser(reader, "next, next, close"), "5 !9 ok");
}

// A log that a reader made would be his, and nobody else could write it.
TEST_F(ProtectedFiles, CanBeWrittenByTheirOwnerWhoeverHasOpenedThem) {
  if (geteuid() != 0) GTEST_SKIP() << "takes two users";
  constexpr uid_t kOwner = 65533;
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  const std::string flag = InFolder("flag");
  std::filesystem::permissions(folder, perms::all);
  for (const char mode : {kOpenReadOnly, kOpenNormal}) {
    const std::string file = InFolder("FILE.KRV") + std::to_string(-mode);
    std::filesystem::copy_file(path, file);
    std::filesystem::permissions(file, perms{0644});
    EXPECT_EQ(chown(file.c_str(), kOwner, kOwner), 0);
    BecomeOrdinaryUser();
    EXPECT_EQ(Opened(file, kOpenReadOnly).Do("first, next, close"), "1 !9 ok");
    if (mode == kOpenNormal) EXPECT_EQ(Client().Open(file), kPermissionError);
    BecomeOneselfAgain();
    BecomeOrdinaryUser(kOwner);
    EXPECT_EQ(Opened(file).Do("insert, close"), "2 ok");
    BecomeOneselfAgain();
    Worker idle({file, "wait " + flag});
    WaitUntilHeld(flag);
    BecomeOrdinaryUser();
    EXPECT_EQ(Opened(file, kOpenReadOnly).Do("first, next*, close"), "1 2 !9 ok");
    BecomeOneselfAgain();
    EXPECT_EQ(idle.Kill(), Worker::kKilled);
    std::filesystem::remove(flag);
  }
  const std::string file = InFolder("FILE.KRV");
  std::filesystem::copy_file(path, file);
  std::filesystem::permissions(file, perms{0644});
  Worker writer({file, "insert, wait " + flag});
  WaitUntilHeld(flag);
  EXPECT_EQ(writer.Kill(), Worker::kKilled);
  std::filesystem::remove(file + "-shm");
  BecomeOrdinaryUser();
  EXPECT_EQ(Client().Open(file, kOpenReadOnly), kPermissionError) << "the log's memory is missing";
  EXPECT_FALSE(std::filesystem::exists(file + "-shm"));
  BecomeOneselfAgain();
  EXPECT_EQ(Opened(file, kOpenReadOnly).Do("first, next*, close"), "1 2 !9 ok");
}

// The first look finds out whether the file fits the log, the second uses it. Makes `flag` when it
// has begun to watch.
bool RemoveAfterTwoLooks(const std::string& log, const std::string& flag) {
  const int watch = inotify_init1(0);
  inotify_add_watch(watch, log.c_str(), IN_OPEN | IN_CLOSE);  // equal ones in a row would be one
  WriteAll(flag, "");
  for (int closed = 0; closed < 2;) {
    alignas(inotify_event) std::array<char, 4096> events{};
    const ssize_t size = read(watch, events.data(), events.size());
    if (size <= 0) return false;
    for (ssize_t i = 0; i < size;) {
      const auto* event = reinterpret_cast<const inotify_event*>(events.data() + i);
      if ((event->mask & IN_CLOSE) != 0) ++closed;
      i += static_cast<ssize_t>(sizeof *event + event->len);
    }
  }
  return std::filesystem::remove(log);
}

TEST_F(ProtectedFiles, AreReadBesideALogThatGoesWhileTheyAreOpened) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  const std::string file = InFolder("FILE.KRV");
  std::filesystem::copy_file(path, file);
  std::filesystem::permissions(file, perms{0644});
  WriteAll(file + "-wal", std::string(5000, 'x'));  // which cannot be played in here
  std::filesystem::permissions(folder, perms{0755});
  const pid_t writer = fork();
  if (writer == 0) _exit(RemoveAfterTwoLooks(file + "-wal", InFolder("flag")) ? 0 : 1);
  WaitUntilHeld(InFolder("flag"));
  BecomeOrdinaryUser();
  EXPECT_EQ(Opened(file, kOpenReadOnly).Do("first, next, close"), "1 !9 ok");
  BecomeOneselfAgain();
  int outcome = -1;
  EXPECT_EQ(waitpid(writer, &outcome, 0), writer);
  EXPECT_EQ(outcome, 0);
}

}  // namespace
}  // namespace recordmanager_tests
