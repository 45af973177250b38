// Files with several names: hard links, each of which would have a log of its own beside it. Other
// processes open them, as this one would know by itself that both names lead to one file.
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>

#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

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
