// Several processes on one file. That they lose nothing, also when some are killed, is shown by
// qlx_stress.
#include <chrono>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <thread>

#include "party_file.h"
#include "worker.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;
using namespace std::chrono_literals;

class Processes : public PartyFile {
 protected:
  Processes() { EXPECT_EQ(client.Do("insert"), "1"); }

  // The file format's numbers for its two modes.
  static constexpr char kJournalled = 1;
  static constexpr char kLogged = 2;

  // Adds the numbers that a worker has put down as acknowledged.
  void ReadLog(const std::string& name, std::set<std::int32_t>& numbers) const {
    std::ifstream file(InFolder(name));
    numbers.insert(std::istream_iterator<std::int32_t>(file), {});
  }
};

TEST_F(Processes, SeeInAWalkWhatWasWrittenAfterItBegan) {
  EXPECT_EQ(client.Do("insert case=7"), "2");
  Worker writer({path, "insert case=7", "200", InFolder("log")});
  while (client.Number() < 202) {
    ASSERT_EQ(client.Do("equal case=7"), "2");
    std::set<std::int32_t> acknowledged{2};
    ReadLog("log", acknowledged);
    client.Do("next* case");
    ASSERT_GE(client.Number(), *acknowledged.rbegin());
  }
  EXPECT_EQ(writer.Wait(), 0);
}

// Once, what was known of the gap that the record moves into was mixed with what lies beyond it.
TEST_F(Processes, NeverMissARecordThatIsAlwaysSomewhere) {
  EXPECT_EQ(client.Do("insert case=9"), "2");
  Worker mover({path, "first, update case=7, update case=5", "1000000", InFolder("log")});
  const auto end = std::chrono::steady_clock::now() + 1s;
  while (std::chrono::steady_clock::now() < end) {
    ASSERT_TRUE(client.Do("from case=6, less case=8").ends_with(" 1"));
  }
  mover.Kill();
}

TEST_F(Processes, KeepWhatTheyHaveOpenFromBeingReplaced) {
  EXPECT_EQ(client.Do("close"), "ok");
  for (const char mode : {kLogged, kJournalled}) {
    const std::string name = InFolder("OPEN.KRV");
    const std::string flag = InFolder("held");
    std::string bytes = ReadAll(path);
    bytes.at(18) = bytes.at(19) = mode;
    WriteAll(name, bytes);
    Worker holder({name, "first, wait " + flag + ", insert"});
    WaitUntilHeld(flag);
    bytes = ReadAll(name);
    EXPECT_EQ(Create(name), kFileInUse);
    EXPECT_EQ(Create(name, DescribeParties(), kCreateOnly), kFileExists);
    EXPECT_TRUE(ReadAll(name) == bytes) << int{mode};
    std::filesystem::remove(flag);
    EXPECT_EQ(holder.Wait(), 0);
    EXPECT_EQ(Opened(name).Do("first, next, next, close"), "1 2 !9 ok");
    EXPECT_EQ(Create(name), kSuccess);
    EXPECT_EQ(Opened(name).Do("first, close"), "!9 ok");
    EXPECT_EQ(Create(name), kSuccess) << "over a file that only this process has kept open";
  }
}

// No read stays open between two calls, so it may take its time.
TEST_F(Processes, EmptyTheLogBesideSomebodyWhoPausesInAWalk) {
  EXPECT_EQ(client.Do("insert, insert, first, next"), "2 3 1 2");
  EXPECT_EQ(Worker({path, "insert", "20", InFolder("log")}).Wait(), 0);
  EXPECT_EQ(std::filesystem::file_size(path + "-wal"), 0);
  std::filesystem::copy_file(path, InFolder("COPY.KRV"));
  EXPECT_EQ(Opened(InFolder("COPY.KRV")).Do("last"), "23");
  EXPECT_EQ(client.Do("next, next, last"), "3 4 23");
}

TEST_F(Processes, MayEndWhileOneOfTheirThreadsIsInACall) {
  EXPECT_EQ(client.Do("close"), "ok");
  std::set<std::int32_t> acknowledged{1};
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(Worker({path, InFolder("log")}, kLeaverOption).Wait(), 0);
    ReadLog("log", acknowledged);
    std::filesystem::remove(InFolder("log"));
  }
  std::istringstream found(Opened(path).Do("first, next*"));
  for (std::int32_t number = 0; found >> number;) acknowledged.erase(number);
  EXPECT_TRUE(acknowledged.empty()) << acknowledged.size() << " were lost";
}

TEST_F(Processes, ReadButNeitherWriteNorReplaceWhatAnotherHolds) {
  const std::string flag = InFolder("held");
  Worker holder({path, "begin, insert, wait " + flag + ", end"});
  WaitUntilHeld(flag);

  EXPECT_EQ(client.Do("first, next"), "1 !9");
  EXPECT_EQ(Create(InFolder("OTHER.KRV")), kSuccess);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(client.Do("insert"), "!84");
  const auto patience = std::chrono::steady_clock::now() - start;
  EXPECT_GT(patience, 1s);
  EXPECT_LT(patience, 10s);
  EXPECT_EQ(client.Do("begin"), "ok");
  // As often as the library tries again before it tells the user.
  int tries = 0;
  while (tries < 40000 && client.Call(kInsert, 0) == kRecordInUse &&
         std::chrono::steady_clock::now() - start < patience + 7s) {
    ++tries;
  }
  EXPECT_EQ(tries, 40000) << "impatient when repeated";
  EXPECT_EQ(client.Do("abort, close"), "ok ok");
  const auto lastChange = std::filesystem::last_write_time(folder);
  EXPECT_EQ(Create(path), kFileInUse);
  EXPECT_EQ(std::filesystem::last_write_time(folder), lastChange) << "a draft was made";

  std::filesystem::remove(flag);
  EXPECT_EQ(holder.Wait(), 0);
  EXPECT_EQ(Opened(path).Do("insert, first, next*"), "3 1 2 3 !9");
}

}  // namespace
}  // namespace recordmanager_tests
