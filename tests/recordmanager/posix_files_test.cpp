// What can happen to files on POSIX hosts only: others rename and delete them while they are open,
// and a process can be kept from writing on.
#include <sys/resource.h>
#include <csignal>

#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

class PosixFiles : public PartyFile {
 protected:
  // From now on this process cannot write beyond that size of any file; it is told so, not killed.
  static void LimitFileSize(rlim_t bytes) {
    std::signal(SIGXFSZ, bytes == RLIM_INFINITY ? SIG_DFL : SIG_IGN);
    rlimit limit{};
    EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    limit.rlim_cur = bytes;
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  void TearDown() override { LimitFileSize(RLIM_INFINITY); }

  // Inserts until it fails; returns how it failed.
  std::string InsertUntilItFails(std::string& inserted) {
    std::string outcome = client.Do("insert");
    for (int i = 0; i < 50'000 && outcome.front() != '!'; ++i) {
      inserted += (inserted.empty() ? "" : " ") + outcome;
      outcome = client.Do("insert");
    }
    return outcome;
  }
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

TEST_F(PosixFiles, StayWholeWhenAWriteFails) {
  std::string inserted;
  for (const rlim_t size : {50'000U, 90'000U, 400'000U}) {
    LimitFileSize(size);
    const std::string failure = InsertUntilItFails(inserted);
    EXPECT_TRUE(failure == "!2" || failure == "!18") << failure;
    EXPECT_EQ(client.Do("close"), "ok");
    LimitFileSize(RLIM_INFINITY);
    ASSERT_EQ(client.Open(path), kSuccess);
    for (const char* key : {"number", "case", "role", "rank"}) {
      EXPECT_EQ(client.Do(std::string("first ") + key + ", next* " + key), inserted + " !9") << key;
    }
  }
}

TEST_F(PosixFiles, LoseATransactionAsAWholeWhenAWriteFails) {
  EXPECT_EQ(client.Do("insert"), "1");
  for (const rlim_t size : {50'000U, 400'000U}) {
    LimitFileSize(size);
    std::string inserted;
    EXPECT_EQ(client.Do("begin"), "ok");
    InsertUntilItFails(inserted);
    client.Do("insert, insert, insert");
    EXPECT_NE(client.Do("end"), "ok");
    EXPECT_EQ(client.Do("first, next, end"), "1 !9 !39");
  }
  LimitFileSize(RLIM_INFINITY);
  EXPECT_EQ(client.Do("insert, first, next*"), "2 1 2 !9");
}

}  // namespace
}  // namespace recordmanager_tests
