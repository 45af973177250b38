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
  // While it lives, this process cannot write beyond that size of any file.
  class SizeLimit {
   public:
    explicit SizeLimit(rlim_t bytes) : previousHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
      EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &previous_), 0);
      const rlimit limited{bytes, previous_.rlim_max};
      EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limited), 0);
    }
    SizeLimit(const SizeLimit&) = delete;
    SizeLimit& operator=(const SizeLimit&) = delete;
    ~SizeLimit() {
      EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &previous_), 0);
      std::signal(SIGXFSZ, previousHandler_);
    }

   private:
    rlimit previous_{};
    void (*previousHandler_)(int);
  };

  // Inserts until it fails or has done so 50,000 times; returns the last status. The numbers are
  // added to `inserted`.
  int InsertUntilItFails(std::string& inserted) {
    int status = kSuccess;
    for (int i = 0; i < 50'000 && status == kSuccess; ++i) {
      status = client.Insert(MakeParty(1));
      if (status == kSuccess) {
        inserted += (inserted.empty() ? "" : " ") + std::to_string(client.record.number);
      }
    }
    return status;
  }
};

TEST_F(PosixFiles, ThatHaveGoneOrWereReplacedAreNoticed) {
  ASSERT_EQ(client.Insert(MakeParty(1)), kSuccess);
  ASSERT_EQ(client.Close(), kSuccess);
  const std::string saved = InFolder("SAVED.KRV");
  std::filesystem::rename(path, saved);
  EXPECT_EQ(client.Open(path), kFileNotFound);

  const std::string other = InFolder("OTHER.KRV");
  ASSERT_EQ(Create(other, DescribeParties()), kSuccess);
  std::filesystem::rename(other, path);
  EXPECT_EQ(client.Open(path), kSuccess);
  EXPECT_EQ(Walk(client, kByNumber), "");
  ASSERT_EQ(client.Insert(MakeParty(1)), kSuccess);
  ASSERT_EQ(client.Insert(MakeParty(1)), kSuccess);
  EXPECT_EQ(client.Close(), kSuccess);

  std::filesystem::rename(saved, path);
  EXPECT_EQ(client.Open(path), kSuccess);
  EXPECT_EQ(Walk(client, kByNumber), "1");
}

TEST_F(PosixFiles, AreTheSameByEveryPath) {
  const std::string link = InFolder("LINK.KRV");
  std::filesystem::create_symlink(path, link);
  Client other;
  ASSERT_EQ(other.Open(link), kSuccess);
  ASSERT_EQ(client.Call(kBeginTransaction), kSuccess);
  EXPECT_EQ(client.Insert(MakeParty(1)), kSuccess);
  EXPECT_EQ(other.Insert(MakeParty(1)), kSuccess)
      << "not a second database that waits for the first";
  EXPECT_EQ(client.Call(kEndTransaction), kSuccess);
  EXPECT_EQ(Walk(other, kByNumber), "1 2");
  EXPECT_EQ(other.Close(), kSuccess);
}

TEST_F(PosixFiles, OfTheSameNameInTwoFoldersAreKeptApart) {
  const auto before = std::filesystem::current_path();
  const auto second = folder / "second";
  std::filesystem::create_directory(second);
  std::filesystem::current_path(folder);
  Client here;
  EXPECT_EQ(here.Open("PARTIES.KRV"), kSuccess);
  EXPECT_EQ(here.Insert(MakeParty(1)), kSuccess);
  std::filesystem::current_path(second);
  Client there;
  EXPECT_EQ(there.Open("PARTIES.KRV"), kFileNotFound);
  EXPECT_EQ(Create("PARTIES.KRV", DescribeParties()), kSuccess);
  EXPECT_EQ(there.Open("PARTIES.KRV"), kSuccess);
  std::filesystem::current_path(before);
  EXPECT_EQ(Walk(there, kByNumber), "");
  EXPECT_EQ(Walk(client, kByNumber), "1");
  EXPECT_EQ(there.Close(), kSuccess);
  EXPECT_EQ(here.Close(), kSuccess);
}

TEST_F(PosixFiles, StayWholeWhenAWriteFails) {
  std::string inserted;
  for (const rlim_t size : {50'000U, 90'000U, 400'000U}) {
    {
      const SizeLimit limit(size);
      const int status = InsertUntilItFails(inserted);
      EXPECT_TRUE(status == kIoError || status == kDiskFull) << status;
      EXPECT_EQ(client.Close(), kSuccess);
    }
    ASSERT_EQ(client.Open(path), kSuccess);
    for (const int key : {kByNumber, kByCase, kByRole, kByRank}) {
      EXPECT_EQ(Walk(client, key), inserted) << "key " << key;
    }
  }
}

TEST_F(PosixFiles, LoseATransactionAsAWholeWhenAWriteFails) {
  ASSERT_EQ(client.Insert(MakeParty(1)), kSuccess);
  for (const rlim_t size : {50'000U, 400'000U}) {
    const SizeLimit limit(size);
    std::string inserted;
    EXPECT_EQ(client.Call(kBeginTransaction), kSuccess);
    InsertUntilItFails(inserted);
    for (int i = 0; i < 3; ++i) {
      client.Insert(MakeParty(1));
    }
    EXPECT_NE(client.Call(kEndTransaction), kSuccess);
    EXPECT_EQ(Walk(client, kByNumber), "1");
    EXPECT_EQ(client.Call(kEndTransaction), kNoTransaction);
  }
  EXPECT_EQ(client.Insert(MakeParty(1)), kSuccess);
  EXPECT_EQ(Walk(client, kByNumber), "1 2");
}

}  // namespace
}  // namespace recordmanager_tests
