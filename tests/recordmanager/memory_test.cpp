// What the record manager keeps of what it has read: never more than a host of 32 bits can spare.
#include <malloc.h>

#include <algorithm>
#include <cstring>

#include "party_file.h"

// There only under the sanitizers, which have an allocator of their own.
// NOLINTNEXTLINE(readability-identifier-naming): the name is theirs.
extern "C" [[gnu::weak]] std::size_t __sanitizer_get_current_allocated_bytes();

namespace recordmanager_tests {
namespace {

using namespace btrieve;

constexpr std::size_t kMegabyte = std::size_t{1} << 20U;

std::size_t AllocatedBytes() {
  if (__sanitizer_get_current_allocated_bytes != nullptr) {
    return __sanitizer_get_current_allocated_bytes();
  }
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

using Memory = PartyFile;

TEST_F(Memory, IsTakenWithinOneLimitForAllFilesThatAreOpen) {
  constexpr int kFiles = 10;
  constexpr int kRecords = 5000;
  Client writer;
  const std::string first = InFolder("0.KRV");
  ASSERT_EQ(Create(first, DescribeFile(writer.length, {DescribeKey(0, 4, kIntegerKey)})), kSuccess);
  ASSERT_EQ(writer.Open(first), kSuccess);
  writer.Call(kBeginTransaction, 0);
  for (std::int32_t i = 0; i < kRecords; ++i) {
    std::memcpy(writer.record.data(), &i, sizeof i);
    ASSERT_EQ(writer.Call(kInsert, 0), kSuccess);
  }
  writer.Call(kEndTransaction, 0);
  writer.Call(kClose, 0);

  const std::size_t before = AllocatedBytes();
  std::size_t most = 0;
  std::vector<Client*> readers;
  for (int i = 0; i < kFiles; ++i) {
    const std::string name = InFolder(std::to_string(i) + ".KRV");
    if (i != 0) std::filesystem::copy_file(first, name);
    readers.push_back(&Opened(name));
  }
  for (int round = 0; round < 2; ++round) {
    for (Client* reader : readers) {
      int count = 0;
      for (int s = reader->Call(kGetFirst, 0); s == kSuccess; s = reader->Call(kGetNext, 0)) {
        ASSERT_EQ(reader->Number(), count++);
      }
      EXPECT_EQ(count, kRecords);
      most = std::max(most, AllocatedBytes() - before);
    }
  }
  EXPECT_LT(most, 28 * kMegabyte);
}

TEST_F(Memory, IsTakenWithinThatLimitAlsoByATransactionOverManyFiles) {
  constexpr int kFiles = 16;
  constexpr std::int32_t kRecords = 2500;
  std::vector<Client*> writers;
  for (int i = 0; i < kFiles; ++i) {
    const std::string name = InFolder(std::to_string(i) + ".KRV");
    ASSERT_EQ(Create(name, DescribeFile(client.length, {DescribeKey(0, 4, kIntegerKey)})),
              kSuccess);
    writers.push_back(&Opened(name));
  }
  const std::size_t before = AllocatedBytes();
  std::size_t most = 0;
  client.Call(kBeginTransaction, 0);
  for (Client* writer : writers) {
    for (std::int32_t i = 0; i < kRecords; ++i) {
      std::memcpy(writer->record.data(), &i, sizeof i);
      ASSERT_EQ(writer->Call(kInsert, 0), kSuccess);
    }
    most = std::max(most, AllocatedBytes());
  }
  EXPECT_EQ(client.Call(kEndTransaction, 0), kSuccess);
  EXPECT_LT(most, before + 28 * kMegabyte);
  for (Client* writer : writers) {
    int count = 0;
    for (int s = writer->Call(kGetFirst, 0); s == kSuccess; s = writer->Call(kGetNext, 0)) {
      ASSERT_EQ(writer->Number(), count++);
    }
    EXPECT_EQ(count, kRecords);
  }
}

}  // namespace
}  // namespace recordmanager_tests
