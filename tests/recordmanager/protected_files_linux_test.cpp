// Files that somebody may not write, or in whose folder he may make none.
#include <fcntl.h>
#include <grp.h>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <functional>

#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;
using std::filesystem::perms;

class ProtectedFiles : public PartyFile {
 protected:
  // Whom the rights on files concern. Root gives up no more than writing in spite of them: another
  // user may not even be let into the folder that the tests run in.
  static void BecomeOrdinaryUser() { KeepCapabilitiesBut(1U << CAP_DAC_OVERRIDE); }
  static void BecomeUser(uid_t user) { EXPECT_EQ(seteuid(user), 0); }
  static void BecomeOneselfAgain() {
    BecomeUser(getuid());
    KeepCapabilitiesBut(0);
  }
  void TearDown() override { BecomeOneselfAgain(); }

  static bool MayBeEntered(const std::filesystem::path& folder, uid_t user) {
    BecomeUser(user);
    const bool may = faccessat(AT_FDCWD, folder.c_str(), X_OK, AT_EACCESS) == 0;
    BecomeOneselfAgain();
    return may;
  }

  // While it is done, neither the file nor its folder may be written.
  static void DoAsReader(const std::string& file, const std::function<void()>& work) {
    const std::filesystem::path folder = std::filesystem::path(file).parent_path();
    std::filesystem::permissions(file, perms{0444});
    std::filesystem::permissions(folder, perms{0555});
    BecomeOrdinaryUser();
    work();
    BecomeOneselfAgain();
    std::filesystem::permissions(folder, perms{0755});
    std::filesystem::permissions(file, perms{0644});
  }

 private:
  static void KeepCapabilitiesBut(unsigned given) {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, 2> sets{};
    EXPECT_EQ(syscall(SYS_capget, &header, sets.data()), 0);
    sets[0].effective = sets[0].permitted & ~given;
    EXPECT_EQ(syscall(SYS_capset, &header, sets.data()), 0);
  }
};

TEST_F(ProtectedFiles, ThatMayNotBeWrittenAreRefused) {
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  const std::filesystem::path closed = folder / "closed";
  const std::string file = InFolder("FILE.KRV");
  std::filesystem::create_directory(closed);
  std::filesystem::copy_file(path, file);
  std::filesystem::copy_file(path, closed / "FILE.KRV");
  std::filesystem::permissions(file, perms{0444});
  const auto readAll = [&](const std::string& name) {
    EXPECT_EQ(Client().Open(name), kPermissionError);
    EXPECT_EQ(Create(name), kPermissionError);
    return Opened(name, kOpenReadOnly).Do("first, next, insert, close");
  };
  BecomeOrdinaryUser();
  EXPECT_EQ(readAll(file), "1 !9 !46 ok");
  BecomeOneselfAgain();
  DoAsReader(closed / "FILE.KRV", [&] {
    std::filesystem::permissions(closed / "FILE.KRV", perms::all);
    EXPECT_EQ(readAll(closed / "FILE.KRV"), "1 !9 !46 ok");
  });
  // With a log that cannot be played in there, the file is not read without it.
  WriteAll(closed / "FILE.KRV-wal", std::string(5000, 'x'));
  DoAsReader(closed / "FILE.KRV", [&] {
    EXPECT_EQ(Create(closed / "NEW.KRV"), kPermissionError);
    EXPECT_EQ(Client().Open(closed / "FILE.KRV", kOpenReadOnly), kPermissionError);
  });
}

TEST_F(ProtectedFiles, ThatCanHaveNoJournalAreRefused) {
  const std::string file = InFolder("FILE.KRV");
  ASSERT_EQ(Create(file), kSuccess);
  for (const std::string& journal : {file + "-journal", file + "-wal"}) {
    ASSERT_EQ(mkfifo(journal.c_str(), 0600), 0);
    EXPECT_EQ(Client().Open(file), kPermissionError) << journal;
    std::filesystem::remove(journal);
    std::filesystem::create_directory(journal);
    EXPECT_EQ(Client().Open(file), kPermissionError) << journal;
    std::filesystem::remove(journal);
  }
  testkit::ReleaseEmbedded();
  WriteAll(file, InMode(kJournalled, ReadAll(path)));
  WriteAll(file + "-journal", "");
  std::filesystem::permissions(file + "-journal", perms{0444});
  BecomeOrdinaryUser();
  EXPECT_EQ(Opened(file).Do("insert, first, close"), "!94 !9 ok") << "as another user's";
}

TEST_F(ProtectedFiles, AreReadWithAllThatOthersWriteWhoCameLater) {
  EXPECT_EQ(client.Do("insert case=7, close"), "1 ok");
  // A copy, as this process still holds what it has written itself.
  const std::string file = InFolder("FILE.KRV");
  std::filesystem::copy_file(path, file);
  Client* reader = nullptr;
  const auto read = [&](const std::string& script) {
    std::string outcome;
    DoAsReader(file, [&] {
      if (reader == nullptr) reader = &Opened(file, kOpenReadOnly);
      outcome = reader->Do(script);
    });
    return outcome;
  };
  EXPECT_EQ(read("first, next, first"), "1 !9 1");
  EXPECT_EQ(Worker(file, "insert case=7").Wait(), 0);
  EXPECT_FALSE(std::filesystem::exists(file + "-wal")) << "has come and gone";
  EXPECT_EQ(read("next, next, equal case=7"), "2 !9 1");
  Worker writer(file, "insert, hold, insert");
  EXPECT_EQ(read("equal case=7, next* case, last"), "1 2 !9 3");
  writer.GoOn();
  EXPECT_EQ(writer.Wait(), 0);
  EXPECT_EQ(read("next, next, close"), "4 !9 ok");
}

// A log that a reader made would be his, and nobody else could write it.
TEST_F(ProtectedFiles, CanBeWrittenByTheirOwnerWhoeverHasOpenedThem) {
  constexpr uid_t kOwner = 65533;
  constexpr uid_t kReader = 65534;
  if (geteuid() != 0 || !MayBeEntered(folder, kReader)) GTEST_SKIP() << "takes two users";
  EXPECT_EQ(client.Do("insert, close"), "1 ok");
  std::filesystem::permissions(folder, perms::all);
  const std::string file = InFolder("FILE.KRV");
  std::filesystem::copy_file(path, file);
  std::filesystem::permissions(file, perms{0644});
  EXPECT_EQ(chown(file.c_str(), kOwner, kOwner), 0);
  BecomeUser(kReader);
  EXPECT_EQ(Opened(file, kOpenReadOnly).Do("first, next, close"), "1 !9 ok");
  EXPECT_EQ(Client().Open(file), kPermissionError);
  BecomeOneselfAgain();
  BecomeUser(kOwner);
  EXPECT_EQ(Opened(file).Do("insert, close"), "2 ok");
  BecomeOneselfAgain();
  Worker writer(file, "hold, insert, hold");
  BecomeUser(kReader);
  EXPECT_EQ(Opened(file, kOpenReadOnly).Do("first, next*, close"), "1 2 !9 ok");
  BecomeOneselfAgain();
  testkit::ReleaseEmbedded();
  writer.GoOn();
  writer.WaitUntilItHolds();
  writer.Kill();
  std::filesystem::remove(file + "-shm");
  BecomeUser(kReader);
  EXPECT_EQ(Client().Open(file, kOpenReadOnly), kPermissionError) << "the log's memory is missing";
  EXPECT_FALSE(std::filesystem::exists(file + "-shm"));
  BecomeOneselfAgain();
  EXPECT_EQ(Opened(file, kOpenReadOnly).Do("first, next*, close"), "1 2 3 !9 ok");
}

// A killed program leaves its log and the memory of it to the others; also in a folder where they
// may not delete them. (That has two sides only where /proc/sys/fs/protected_regular is set.)
TEST_F(ProtectedFiles, AreSharedWithTheirGroupTogetherWithTheirLogs) {
  constexpr uid_t kMember = 65534;
  constexpr gid_t kGroup = 65533;
  if (geteuid() != 0 || !MayBeEntered(folder, kMember)) GTEST_SKIP() << "takes two users";
  const std::string file = InFolder("FILE.KRV");
  std::filesystem::copy_file(path, file);
  EXPECT_EQ(chown(file.c_str(), 0, kGroup), 0);
  std::filesystem::permissions(file, perms{0660});
  std::filesystem::permissions(folder, perms::all | perms::sticky_bit);
  ASSERT_EQ(setgroups(1, &kGroup), 0);
  BecomeUser(kMember);
  EXPECT_EQ(Opened(file).Do("insert"), "1");
  BecomeOneselfAgain();
  EXPECT_EQ(setgroups(0, nullptr), 0);
  for (const char* suffix : {"-wal", "-shm"}) {
    struct stat facts {};
    EXPECT_EQ(stat((file + suffix).c_str(), &facts), 0);
    EXPECT_EQ(facts.st_gid, kGroup) << suffix;
  }
  EXPECT_EQ(Worker(file, "insert").Wait(), 0);
}

}  // namespace
}  // namespace recordmanager_tests
