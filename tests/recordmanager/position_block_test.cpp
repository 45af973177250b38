// The position block is in the caller's hands: whatever comes back must be recognised or refused.
#include <cstring>
#include <memory>

#include "host.h"
#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

using Block = std::array<std::uint8_t, kPositionBlockSize>;

class PositionBlock : public PartyFile {
 protected:
  PositionBlock() {
    EXPECT_EQ(client.Insert(MakeParty(1)), kSuccess);
    EXPECT_EQ(client.Get(kGetEqual, kByNumber, 1), kSuccess);
  }

  int ReadWith(const Block& block) {
    Client other = client;
    other.block = block;
    return other.Call(kGetFirst, kByNumber);
  }
};

TEST_F(PositionBlock, IsRefusedWhenItWasNotMadeByOpen) {
  Block ones;
  ones.fill(0xFF);
  EXPECT_EQ(ReadWith(Block{}), kFileNotOpen);
  EXPECT_EQ(ReadWith(ones), kFileNotOpen);
  EXPECT_EQ(host::EntryPoint()(kGetFirst, nullptr, nullptr, nullptr, nullptr, 0, 0), kFileNotOpen);
}

TEST_F(PositionBlock, IsRefusedWhenAnyByteHasChanged) {
  for (std::size_t i = 0; i < kPositionBlockSize; ++i) {
    Block changed = client.block;
    changed[i] ^= 0x10;
    EXPECT_EQ(ReadWith(changed), kFileNotOpen) << "byte " << i;
  }
  EXPECT_EQ(ReadWith(client.block), kSuccess);
}

TEST_F(PositionBlock, EndsWithTheFileThatItWasOpenedFor) {
  const Block old = client.block;
  ASSERT_EQ(client.Close(), kSuccess);
  EXPECT_EQ(client.Close(), kFileNotOpen);
  EXPECT_EQ(ReadWith(old), kFileNotOpen);
  ASSERT_EQ(client.Open(path), kSuccess);
  EXPECT_EQ(ReadWith(old), kFileNotOpen) << "another opening of the same file";
}

TEST_F(PositionBlock, MayLieAnywhere) {
  const auto memory = std::make_unique<std::array<std::uint8_t, kPositionBlockSize + 1>>();
  std::memcpy(memory->data() + 1, client.block.data(), kPositionBlockSize);
  EXPECT_EQ(host::EntryPoint()(kGetFirst, memory->data() + 1, &client.record, &client.length,
                               client.key.data(), kMaxKeyLength, kByNumber),
            kSuccess);
}

TEST_F(PositionBlock, BelongsToTheClientThatOpenedIt) {
  std::array<std::uint8_t, kClientIdSize> zeros{};
  std::array<std::uint8_t, kClientIdSize> someone{1};
  const auto read = [&](void* id) {
    return host::EntryPointWithClient()(kGetFirst, client.block.data(), &client.record,
                                        &client.length, client.key.data(), kMaxKeyLength, kByNumber,
                                        id);
  };
  EXPECT_EQ(read(someone.data()), kFileNotOpen);
  EXPECT_EQ(read(zeros.data()), kSuccess) << "which is the client of BTRCALL";
  EXPECT_EQ(read(nullptr), kSuccess);
}

TEST_F(PositionBlock, IsServedWithWhateverBuffersCome) {
  const struct {
    WORD operation;
    bool data, length, key;
    int status;
  } cases[] = {
      {kGetFirst, false, true, true, kDataBufferLength},
      {kGetFirst, true, false, true, kDataBufferLength},
      {kGetFirst, true, true, false, kKeyBufferTooShort},
      {kInsert, false, true, true, kDataBufferLength},
      {kInsert, true, true, false, kKeyBufferTooShort},
      {kUpdate, false, true, true, kDataBufferLength},
      {kStat, false, true, true, kDataBufferLength},
      {kStat, true, false, true, kDataBufferLength},
      {kOpen, true, true, false, kInvalidFileName},
      {kCreate, true, true, false, kDataBufferLength},
      {16, true, true, true, kInvalidOperation},
      {105, true, true, true, kInvalidOperation},
      {0xFFFF, true, true, true, kInvalidOperation},
      {kDelete, false, false, false, kSuccess},
      {kClose, false, false, false, kSuccess},
  };
  for (const auto& [operation, data, length, key, status] : cases) {
    EXPECT_EQ(host::EntryPoint()(operation, client.block.data(), data ? &client.record : nullptr,
                                 length ? &client.length : nullptr,
                                 key ? client.key.data() : nullptr, kMaxKeyLength, 0),
              status)
        << "operation " << operation << ' ' << data << length << key;
  }
}

}  // namespace
}  // namespace recordmanager_tests
