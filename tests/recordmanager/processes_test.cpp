// Several processes on one file, some of which do not live to the end.
#include <chrono>
#include <fstream>
#include <iterator>
#include <set>
#include <thread>

#include "host.h"
#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;
using namespace std::chrono_literals;

class Processes : public PartyFile {
 protected:
  // Adds the numbers that a worker has put down as acknowledged.
  void ReadLog(const std::string& name, std::set<std::int32_t>& numbers) const {
    std::ifstream file(InFolder(name));
    numbers.insert(std::istream_iterator<std::int32_t>(file), {});
  }

  std::ptrdiff_t CountBy(const char* key) {
    const std::string numbers = client.Do(std::string("walk ") + key);
    return std::count(numbers.begin(), numbers.end(), ' ') + 1;
  }
};

TEST_F(Processes, LoseNoUpdateAndShareNoNumber) {
  EXPECT_EQ(client.Do("insert"), "1");
  const std::string counter = std::to_string(offsetof(Party, counter));
  const std::vector<std::string> count{"add", path, "1", counter, "150"};
  const auto insert = [this](const char* caseId) {
    return std::vector<std::string>{"insert", path, caseId, "100", InFolder(caseId)};
  };
  host::Worker workers[] = {host::Worker(count),       host::Worker(count),
                            host::Worker(count),       host::Worker(insert("7")),
                            host::Worker(insert("8")), host::Worker(insert("9"))};
  std::set<std::int32_t> numbers{1};
  for (host::Worker& worker : workers) EXPECT_EQ(worker.Wait(), 0);
  for (const char* log : {"7", "8", "9"}) ReadLog(log, numbers);
  EXPECT_EQ(client.Do("equal number=1"), "1");
  EXPECT_EQ(client.record.counter, 450);
  EXPECT_EQ(numbers.size(), 301U);
  EXPECT_EQ(*numbers.rbegin(), 301);
  EXPECT_EQ(CountBy("case"), 301);
}

TEST_F(Processes, KeepWhatWasAcknowledgedWhenTheyAreKilled) {
  constexpr int kRounds = 12;
  std::set<std::int32_t> acknowledged;
  for (int round = 0; round < kRounds; ++round) {
    host::Worker victim({"insert", path, "1", "1000000", InFolder("victim")});
    host::Worker bystander({"insert", path, "2", "5", InFolder("bystander")});
    std::this_thread::sleep_for(40ms + round * 3ms);
    victim.Kill();
    EXPECT_EQ(bystander.Wait(), 0);
    ReadLog("victim", acknowledged);
    ReadLog("bystander", acknowledged);
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
  EXPECT_EQ(client.Do("insert"), "1");
  const std::string flag = InFolder("held");
  host::Worker holder({"hold", path, flag});
  for (int i = 0; i < 2000 && !std::filesystem::exists(flag); ++i) std::this_thread::sleep_for(5ms);
  ASSERT_TRUE(std::filesystem::exists(flag));

  EXPECT_EQ(client.Do("walk number"), "1");
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
  EXPECT_EQ(Create(path), kFileInUse);

  std::filesystem::remove(flag);
  EXPECT_EQ(holder.Wait(), 0);
  EXPECT_EQ(Opened(path).Do("insert, walk number"), "3 1 2 3");
}

}  // namespace
}  // namespace recordmanager_tests
