// Several processes on one file, some of which do not live to the end.
#include <chrono>
#include <fstream>
#include <iterator>
#include <set>
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

  // Adds the numbers that a worker has put down as acknowledged.
  void ReadLog(const std::string& name, std::set<std::int32_t>& numbers) const {
    std::ifstream file(InFolder(name));
    numbers.insert(std::istream_iterator<std::int32_t>(file), {});
  }

  std::ptrdiff_t CountBy(const char* key) {
    const std::string numbers = client.Do(std::string("first ") + key + ", next* " + key);
    return std::count(numbers.begin(), numbers.end(), ' ');
  }
};

TEST_F(Processes, LoseNoUpdateAndShareNoNumber) {
  const std::vector<std::string> count{path, "equal number=1, count, update", "150"};
  const auto insert = [this](const char* log) {
    return std::vector<std::string>{path, "insert case=7", "100", InFolder(log)};
  };
  Worker workers[] = {Worker(count),       Worker(count),       Worker(count),
                      Worker(insert("a")), Worker(insert("b")), Worker(insert("c"))};
  for (Worker& worker : workers) EXPECT_EQ(worker.Wait(), 0);
  std::set<std::int32_t> numbers{1};
  for (const char* log : {"a", "b", "c"}) ReadLog(log, numbers);
  EXPECT_EQ(client.Do("equal number=1"), "1");
  EXPECT_EQ(client.Counter(), 450);
  EXPECT_EQ(numbers.size(), 301U);
  EXPECT_EQ(*numbers.rbegin(), 301);
  EXPECT_EQ(CountBy("case"), 301);
}

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

TEST_F(Processes, KeepWhatWasAcknowledgedWhenTheyAreKilled) {
  constexpr int kRounds = 12;
  std::set<std::int32_t> acknowledged{1};
  for (int round = 0; round < kRounds; ++round) {
    Worker victim({path, "insert", "1000000", InFolder("victim")});
    Worker bystander({path, "insert", "5", InFolder("bystander")});
    while (!std::filesystem::exists(InFolder("victim"))) std::this_thread::sleep_for(1ms);
    std::this_thread::sleep_for(10ms + round * 3ms);
    victim.Kill();
    EXPECT_EQ(bystander.Wait(), 0);
    ReadLog("victim", acknowledged);
    ReadLog("bystander", acknowledged);
    std::filesystem::remove(InFolder("victim"));
  }
  ASSERT_GT(acknowledged.size(), 60U);
  for (const std::int32_t survivor : acknowledged) {
    const std::string number = std::to_string(survivor);
    ASSERT_EQ(client.Do("equal number=" + number), number);
  }
  const auto count = CountBy("number");
  EXPECT_LE(count, std::ssize(acknowledged) + kRounds)
      << "at most one each was written and not put down";
  for (const char* key : {"case", "role", "rank"}) EXPECT_EQ(CountBy(key), count) << key;
}

TEST_F(Processes, ReadButNeitherWriteNorReplaceWhatAnotherHolds) {
  const std::string flag = InFolder("held");
  Worker holder({path, "begin, insert, wait " + flag + ", end"});
  for (int i = 0; i < 2000 && !std::filesystem::exists(flag); ++i) std::this_thread::sleep_for(5ms);
  ASSERT_TRUE(std::filesystem::exists(flag));

  EXPECT_EQ(client.Do("first, next"), "1 !9");
  EXPECT_EQ(Create(InFolder("OTHER.KRV")), kSuccess);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(client.Do("insert"), "!84");
  const auto patience = std::chrono::steady_clock::now() - start;
  EXPECT_GT(patience, 1s);
  EXPECT_LT(patience, 10s);
  EXPECT_EQ(client.Do("begin"), "ok");
  for (int i = 0; i < 20; ++i) EXPECT_EQ(client.Do("insert"), "!84");
  EXPECT_EQ(client.Do("abort, close"), "ok ok");
  EXPECT_LT(std::chrono::steady_clock::now() - start, 2 * patience) << "impatient when repeated";
  const auto countFiles = [this] {
    return std::distance(std::filesystem::directory_iterator(folder), {});
  };
  const auto filesBefore = countFiles();
  EXPECT_EQ(Create(path), kFileInUse);
  EXPECT_EQ(countFiles(), filesBefore) << "a draft was left behind";

  std::filesystem::remove(flag);
  EXPECT_EQ(holder.Wait(), 0);
  EXPECT_EQ(Opened(path).Do("insert, first, next*"), "3 1 2 3 !9");
}

}  // namespace
}  // namespace recordmanager_tests
