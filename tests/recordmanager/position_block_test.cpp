// The position block and the other buffers are in the caller's hands: whatever comes back must be
// recognised or refused.
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
  PositionBlock() { EXPECT_EQ(client.Do("insert, equal number=1"), "1 1"); }

  std::string ReadWith(const Block& block) {
    Client other = client;
    other.block = block;
    return other.Do("first number");
  }
};

TEST_F(PositionBlock, IsRefusedUnlessItIsJustWhatOpenMade) {
  Block ones;
  ones.fill(0xFF);
  EXPECT_EQ(ReadWith(Block{}), "!3");
  EXPECT_EQ(ReadWith(ones), "!3");
  for (std::size_t i = 0; i < kPositionBlockSize; ++i) {
    Block changed = client.block;
    changed[i] ^= 0x10;
    EXPECT_EQ(ReadWith(changed), "!3") << "byte " << i;
  }
  const Block old = client.block;
  EXPECT_EQ(ReadWith(old), "1");
  EXPECT_EQ(client.Do("close, close"), "ok !3");
  EXPECT_EQ(ReadWith(old), "!3");
  ASSERT_EQ(client.Open(path), kSuccess);
  EXPECT_EQ(ReadWith(old), "!3") << "another opening of the same file";
}

TEST_F(PositionBlock, MayLieAnywhereAndBelongsToTheClientThatOpenedIt) {
  const auto memory = std::make_unique<std::array<std::uint8_t, kPositionBlockSize + 1>>();
  std::memcpy(memory->data() + 1, client.block.data(), kPositionBlockSize);
  std::array<std::uint8_t, kClientIdSize> zeros{};  // which are the client of BTRCALL
  std::array<std::uint8_t, kClientIdSize> someone{1};
  const auto read = [&](void* id) {
    return host::EntryPointWithClient()(kGetFirst, memory->data() + 1, &client.record,
                                        &client.length, client.key.data(), kMaxKeyLength, 0, id);
  };
  EXPECT_EQ(read(someone.data()), kFileNotOpen);
  EXPECT_EQ(read(zeros.data()), kSuccess);
  EXPECT_EQ(read(nullptr), kSuccess);
}

TEST_F(PositionBlock, IsServedWithWhateverBuffersCome) {
  enum Missing { kNothing, kBlock, kData, kLength, kKey, kAll };
  const struct {
    WORD operation;
    Missing missing;
    int status;
  } cases[] = {
      {kGetFirst, kBlock, kFileNotOpen},
      {kGetFirst, kData, kDataBufferLength},
      {kGetFirst, kLength, kDataBufferLength},
      {kGetFirst, kKey, kKeyBufferTooShort},
      {kInsert, kData, kDataBufferLength},
      {kInsert, kKey, kKeyBufferTooShort},
      {kUpdate, kData, kDataBufferLength},
      {kStat, kData, kDataBufferLength},
      {kStat, kLength, kDataBufferLength},
      {kOpen, kKey, kInvalidFileName},
      {kOpen, kBlock, kFileNotOpen},
      {kCreate, kData, kDataBufferLength},
      {16, kNothing, kInvalidOperation},
      {105, kNothing, kInvalidOperation},
      {0xFFFF, kNothing, kInvalidOperation},
      {kDelete, kAll, kSuccess},
      {kClose, kAll, kSuccess},
  };
  for (const auto& [operation, missing, status] : cases) {
    const auto given = [missing = missing](Missing which, auto* buffer) {
      return missing == which || (missing == kAll && which != kBlock) ? nullptr : buffer;
    };
    EXPECT_EQ(host::EntryPoint()(operation, given(kBlock, client.block.data()),
                                 given(kData, &client.record), given(kLength, &client.length),
                                 given(kKey, client.key.data()), kMaxKeyLength, 0),
              status)
        << "operation " << operation << " without " << missing;
  }
}

}  // namespace
}  // namespace recordmanager_tests
