// What the record manager keeps of what it has read: never more than a host of 32 bits can spare.
#include <malloc.h>

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

class Memory : public PartyFile {
 protected:
  // A new file of long records.
  Client& Created(int number) {
    const std::string name = InFolder(std::to_string(number) + ".KRV");
    EXPECT_EQ(Create(name, DescribeFile(client.length, {DescribeKey(0, 4, kIntegerKey)})),
              kSuccess);
    return Opened(name);
  }

  static void Insert(Client& writer, int records) {
    for (std::int32_t i = 0; i < records; ++i) {
      std::memcpy(writer.record.data(), &i, sizeof i);
      ASSERT_EQ(writer.Call(kInsert, 0), kSuccess);
    }
  }

  static int Count(Client& reader) {
    int count = 0;
    for (int s = reader.Call(kGetFirst, 0); s == kSuccess; s = reader.Call(kGetNext, 0)) {
      EXPECT_EQ(reader.Number(), count++);
    }
    return count;
  }
};

TEST_F(Memory, IsTakenWithinOneLimitForAllFilesThatAreOpen) {
  constexpr std::size_t kLimit = 28 * kMegabyte;
  constexpr int kRecords = 2500;
  std::vector<Client*> files;
  for (int i = 0; i < 16; ++i) files.push_back(&Created(i));
  Client& last = *files.back();
  EXPECT_EQ(last.Do("begin"), "ok");
  Insert(last, kRecords);
  EXPECT_EQ(last.Do("abort, close"), "ok ok");
  EXPECT_EQ(std::filesystem::file_size(InFolder("15.KRV-wal")), 0U) << "of what was taken back";
  ASSERT_EQ(last.Open(InFolder("15.KRV")), kSuccess);
  const std::size_t before = AllocatedBytes();
  EXPECT_EQ(client.Do("begin"), "ok");
  for (Client* file : files) {
    Insert(*file, kRecords);
    EXPECT_LT(AllocatedBytes(), before + kLimit) << "in a transaction over many files";
  }
  EXPECT_EQ(client.Do("end"), "ok");
  for (int round = 0; round < 2; ++round) {
    for (Client* file : files) {
      EXPECT_EQ(Count(*file), kRecords);
      EXPECT_LT(AllocatedBytes(), before + kLimit);
    }
  }
}

}  // namespace
}  // namespace recordmanager_tests
