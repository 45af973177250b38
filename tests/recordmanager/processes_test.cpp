// Several processes on one file. That they lose nothing, also when some are killed, is shown by
// qlx_stress.
#include <chrono>

#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;
using namespace std::chrono_literals;

class Processes : public PartyFile {
 protected:
  Processes() { EXPECT_EQ(client.Do("insert"), "1"); }
};

// Once, what was known of the gap that the record moves into was mixed with what lies beyond it.
TEST_F(Processes, NeverMissARecordThatIsAlwaysSomewhere) {
  EXPECT_EQ(client.Do("insert case=9"), "2");
  Worker mover(path, "first, update case=7, update case=5", 1000000);
  for (int look = 0; look < 10000; ++look) {
    ASSERT_TRUE(client.Do("from case=6, less case=8").ends_with(" 1"));
  }
  mover.Kill();
}

TEST_F(Processes, KeepWhatTheyHaveOpenFromBeingReplaced) {
  EXPECT_EQ(client.Do("close"), "ok");
  for (const char mode : {kLogged, kJournalled}) {
    const std::string name = InFolder("OPEN.KRV");
    WriteAll(name, InMode(mode, ReadAll(path)));
    Worker holder(name, "first, hold, insert");
    const std::string bytes = ReadAll(name);
    EXPECT_EQ(Create(name), kFileInUse);
    EXPECT_EQ(Create(name, DescribeParties(), kCreateOnly), kFileExists);
    EXPECT_TRUE(ReadAll(name) == bytes) << int{mode};
    holder.GoOn();
    EXPECT_EQ(holder.Wait(), 0);
    EXPECT_EQ(Opened(name).Do("first, next, next, close"), "1 2 !9 ok");
    EXPECT_EQ(Create(name), kSuccess);
    EXPECT_EQ(Opened(name).Do("first, close"), "!9 ok");
    EXPECT_EQ(Create(name), kSuccess) << "over a file that only this process has kept open";
  }
}

// Each name (hard link) would have a log of its own.
TEST_F(Processes, UseAFileByOneNameAtATime) {
  EXPECT_EQ(client.Do("close"), "ok");
  testkit::ReleaseEmbedded();
  const std::string other = InFolder("OTHER.KRV");
  std::filesystem::create_hard_link(path, other);
  Worker writer(path, "insert, hold, insert");
  EXPECT_EQ(Client().Open(other), kFileInUse);
  EXPECT_EQ(Client().Open(other, kOpenReadOnly), kFileInUse);
  EXPECT_EQ(Worker(path, "last").Wait(), 0);
  writer.GoOn();
  EXPECT_EQ(writer.Wait(), 0);
  EXPECT_EQ(Opened(other).Do("first, next*"), "1 2 3 !9");
}

TEST_F(Processes, ReadButNeitherWriteNorReplaceWhatAnotherHolds) {
  Worker holder(path, "begin, insert, hold, end");

  EXPECT_EQ(client.Do("first, next"), "1 !9");
  EXPECT_EQ(Create(InFolder("OTHER.KRV")), kSuccess);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(client.Do("insert"), "!84");
  const auto patience = std::chrono::steady_clock::now() - start;
  EXPECT_GT(patience, 1s);
  EXPECT_EQ(client.Do("begin"), "ok");
  // As often as the library tries again before it tells the user.
  for (int tries = 0; tries < 40000; ++tries) ASSERT_EQ(client.Call(kInsert, 0), kRecordInUse);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 10 * patience) << "patient again and again";
  EXPECT_EQ(client.Do("abort, close"), "ok ok");
  const auto lastChange = std::filesystem::last_write_time(folder);
  EXPECT_EQ(Create(path), kFileInUse);
  EXPECT_EQ(std::filesystem::last_write_time(folder), lastChange) << "a draft was made";

  holder.GoOn();
  EXPECT_EQ(holder.Wait(), 0);
  EXPECT_EQ(Opened(path).Do("insert, first, next*"), "3 1 2 3 !9");
}

}  // namespace
}  // namespace recordmanager_tests
