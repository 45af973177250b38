// Several processes on one file, some of which do not live to the end.
#include <chrono>
#include <cstdint>
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
  // The numbers that a worker has put down as acknowledged; the last one may be cut off.
  static std::vector<std::int32_t> ReadLog(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    std::vector<std::int32_t> numbers(bytes.size() / sizeof(std::int32_t));
    std::copy_n(bytes.data(), numbers.size() * sizeof(std::int32_t),
                reinterpret_cast<char*>(numbers.data()));
    return numbers;
  }

  std::size_t CountByKey(int key) {
    std::size_t count = 0;
    for (int status = client.Call(kGetFirst, key); status == kSuccess;
         status = client.Call(kGetNext, key)) {
      ++count;
    }
    return count;
  }
};

TEST_F(Processes, LoseNoneOfEachOthersUpdates) {
  ASSERT_EQ(client.Insert(MakeParty(1)), kSuccess);
  host::Worker workers[] = {host::Worker({"count", path, "150"}),
                            host::Worker({"count", path, "150"}),
                            host::Worker({"count", path, "150"})};
  for (host::Worker& worker : workers) {
    EXPECT_EQ(worker.Wait(), 0);
  }
  EXPECT_EQ(client.Get(kGetEqual, kByNumber, 1), kSuccess);
  EXPECT_EQ(client.record.counter, 450);
}

TEST_F(Processes, NeverGetTheSameNumber) {
  host::Worker workers[] = {host::Worker({"insert", path, "1", "100", InFolder("log1")}),
                            host::Worker({"insert", path, "2", "100", InFolder("log2")}),
                            host::Worker({"insert", path, "3", "100", InFolder("log3")})};
  for (host::Worker& worker : workers) {
    EXPECT_EQ(worker.Wait(), 0);
  }
  std::set<std::int32_t> numbers;
  for (const char* name : {"log1", "log2", "log3"}) {
    const auto log = ReadLog(InFolder(name));
    numbers.insert(log.begin(), log.end());
  }
  EXPECT_EQ(numbers.size(), 300U);
  EXPECT_EQ(*numbers.rbegin(), 300);
  EXPECT_EQ(CountByKey(kByCase), 300U);
}

TEST_F(Processes, SeeInAWalkWhatWasWrittenAfterItBegan) {
  constexpr int kRecords = 200;
  const std::string log = InFolder("log");
  ASSERT_EQ(client.Insert(MakeParty(1)), kSuccess);
  host::Worker writer({"insert", path, "1", std::to_string(kRecords), log});
  std::int32_t last = 0;
  for (int walks = 0; last <= kRecords && walks < 1'000'000; ++walks) {
    ASSERT_EQ(client.Get(kGetEqual, kByCase, 1), kSuccess);
    const auto acknowledged = ReadLog(log);
    while (client.Call(kGetNext, kByCase) == kSuccess) {
      last = client.record.number;
    }
    ASSERT_GE(last, acknowledged.empty() ? 0 : acknowledged.back());
  }
  EXPECT_EQ(writer.Wait(), 0);
}

TEST_F(Processes, KeepWhatWasAcknowledgedWhenTheyAreKilled) {
  std::set<std::int32_t> acknowledged;
  for (int round = 0; round < 12; ++round) {
    const std::string log = InFolder("log" + std::to_string(round));
    host::Worker victim({"insert", path, "1", "1000000", log});
    host::Worker bystander({"insert", path, "2", "5", log + "b"});
    std::this_thread::sleep_for(40ms + round * 3ms);
    victim.Kill();
    EXPECT_EQ(bystander.Wait(), 0);
    for (const std::string& name : {log, log + "b"}) {
      const auto numbers = ReadLog(name);
      acknowledged.insert(numbers.begin(), numbers.end());
    }
  }
  ASSERT_GT(acknowledged.size(), 60U);
  for (const std::int32_t survivor : acknowledged) {
    ASSERT_EQ(client.Get(kGetEqual, kByNumber, survivor), kSuccess) << survivor;
  }
  const std::size_t count = CountByKey(kByNumber);
  EXPECT_GE(count, acknowledged.size());
  EXPECT_LE(count, acknowledged.size() + 12) << "at most one each was written and not put down";
  for (const int key : {kByCase, kByRole, kByRank}) {
    EXPECT_EQ(CountByKey(key), count) << "key " << key;
  }
}

TEST_F(Processes, ReadButDoNotWriteWhatAnotherHolds) {
  ASSERT_EQ(client.Insert(MakeParty(7)), kSuccess);
  const std::string flag = InFolder("held");
  host::Worker holder({"hold", path, flag});
  for (int i = 0; i < 2000 && !std::filesystem::exists(flag); ++i) {
    std::this_thread::sleep_for(5ms);
  }
  ASSERT_TRUE(std::filesystem::exists(flag));

  EXPECT_EQ(Walk(client, kByNumber), "1");
  EXPECT_EQ(Create(InFolder("OTHER.KRV"), DescribeParties()), kSuccess);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(client.Insert(MakeParty(7)), kRecordInUse);
  const auto patience = std::chrono::steady_clock::now() - start;
  EXPECT_GT(patience, 1s);
  EXPECT_LT(patience, 10s);
  EXPECT_EQ(client.Call(kBeginTransaction), kSuccess);
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(client.Insert(MakeParty(7)), kRecordInUse);
  }
  EXPECT_EQ(client.Call(kAbortTransaction), kSuccess);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 2 * patience) << "impatient when repeated";

  std::filesystem::remove(flag);
  EXPECT_EQ(holder.Wait(), 0);
  EXPECT_EQ(client.Insert(MakeParty(7)), kSuccess);
  EXPECT_EQ(Walk(client, kByNumber), "1 2 3");
}

TEST_F(Processes, DoNotReplaceAFileThatAnotherHasOpen) {
  ASSERT_EQ(client.Close(), kSuccess);
  const std::string flag = InFolder("held");
  host::Worker holder({"hold", path, flag});
  for (int i = 0; i < 2000 && !std::filesystem::exists(flag); ++i) {
    std::this_thread::sleep_for(5ms);
  }
  EXPECT_EQ(Create(path, DescribeParties()), kFileInUse);
  std::filesystem::remove(flag);
  EXPECT_EQ(holder.Wait(), 0);
  ASSERT_EQ(client.Open(path), kSuccess);
  EXPECT_EQ(Walk(client, kByNumber), "1");
}

}  // namespace
}  // namespace recordmanager_tests
