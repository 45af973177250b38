// What can happen to files on POSIX hosts only: others rename and delete them while they are open.
#include <unistd.h>

#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

class PosixFiles : public PartyFile {
 protected:
  // Whom the rights on files concern, while it lives.
  class AsOrdinaryUser {
   public:
    AsOrdinaryUser() { EXPECT_TRUE(before_ != 0 || seteuid(kNobody) == 0); }
    AsOrdinaryUser(const AsOrdinaryUser&) = delete;
    AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;
    ~AsOrdinaryUser() { EXPECT_EQ(seteuid(before_), 0); }

   private:
    static constexpr uid_t kNobody = 65534;
    uid_t before_ = geteuid();
  };
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

TEST_F(PosixFiles, ThatMayNotBeWrittenAreRefused) {
  using std::filesystem::perms;
  ASSERT_EQ(client.Close(), kSuccess);
  const std::filesystem::path closed = folder / "closed";
  std::filesystem::create_directory(closed);
  const std::string file = InFolder("FILE.KRV");
  const std::string inClosed = closed / "FILE.KRV";
  std::filesystem::copy_file(path, file);
  std::filesystem::copy_file(path, inClosed);
  std::filesystem::permissions(folder, perms::all);
  std::filesystem::permissions(file, perms{0444});
  std::filesystem::permissions(inClosed, perms::all);
  std::filesystem::permissions(closed, perms{0555});
  {
    const AsOrdinaryUser user;
    Client other;
    EXPECT_EQ(other.Open(file), kPermissionError);
    EXPECT_EQ(other.Open(inClosed), kPermissionError);
    EXPECT_EQ(Create(file, DescribeParties()), kPermissionError);
    EXPECT_EQ(Create(closed / "NEW.KRV", DescribeParties()), kPermissionError);
    EXPECT_EQ(other.Open(file, kOpenReadOnly), kSuccess);
    EXPECT_EQ(Walk(other, kByNumber), "");
    EXPECT_EQ(other.Close(), kSuccess);
  }
  std::filesystem::permissions(closed, perms::all);
}

}  // namespace
}  // namespace recordmanager_tests
