// The position block and the other buffers are in the caller's hands: whatever comes back must be
// recognised or refused, and nothing beyond them is touched.
#include <cstring>
#include <memory>

#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;
using qlx99::tests::EmbeddedCall;
using qlx99::tests::EmbeddedCallId;

class Buffers : public PartyFile {
 protected:
  using Block = decltype(Client::block);

  Buffers() { EXPECT_EQ(client.Do("insert case=7, equal number=1"), "1 1"); }

  std::string ReadWith(const Block& block) {
    Client other = client;
    other.block = block;
    return other.Do("first");
  }
};

TEST_F(Buffers, OfPositionsAreRefusedUnlessTheyAreJustWhatOpenMade) {
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

TEST_F(Buffers, OfPositionsMayLieAnywhereAndBelongToTheClientThatOpened) {
  const auto memory = std::make_unique<std::array<std::uint8_t, kPositionBlockSize + 1>>();
  std::memcpy(memory->data() + 1, client.block.data(), kPositionBlockSize);
  const auto read = [&](void* id) {
    return EmbeddedCallId()(kGetFirst, memory->data() + 1, client.record.data(), &client.length,
                            client.key.data(), kMaxKeyLength, 0, id);
  };
  std::array<std::uint8_t, kClientIdSize> someone{1};
  EXPECT_EQ(read(someone.data()), kFileNotOpen);
  EXPECT_EQ(read(nullptr), kSuccess);
}

TEST_F(Buffers, MayBeMissing) {
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
    EXPECT_EQ(EmbeddedCall()(operation, given(kBlock, client.block.data()),
                             given(kData, client.record.data()), given(kLength, &client.length),
                             given(kKey, client.key.data()), kMaxKeyLength, 0),
              status)
        << "operation " << operation << " without " << missing;
  }
}

TEST_F(Buffers, ThatAreTooShortStayAsTheyAre) {
  client.record.fill('#');
  client.length = kPartyLength - 1;
  EXPECT_EQ(client.Do("first, update"), "!22 !22");
  EXPECT_EQ(client.Do("equal number=2"), "!4") << "there is nothing that could be too long";
  EXPECT_EQ(std::count(client.record.begin(), client.record.end(), '#'), std::ssize(client.record));
  EXPECT_EQ(client.Do("insert"), "!22");
}

TEST_F(Buffers, GetNothingBeforeItIsWrittenAndNoKeyWithoutANumber) {
  EXPECT_EQ(client.Do("insert number=2147483647, insert"), "2147483647 !5");
  EXPECT_EQ(client.Number(), 0) << "a number that was given and not written";
  client.key.fill('#');
  EXPECT_EQ(client.Do("insert number=5 -1, update -1"), "5 ok");
  EXPECT_EQ(client.key[0], '#');
}

TEST_F(Buffers, HoldALengthOfSixteenBitsAndAsMuchKeyAsThereIs) {
  for (const ULONG high : {0U, 0xDEAD0000U}) {
    client.length = high | 0xFFFF;
    EXPECT_EQ(client.Do("equal case=7"), "1");
    EXPECT_EQ(client.length, high | kPartyLength);
  }
  // A caller with a 16-bit variable and a key of 4 bytes, and nothing behind them.
  const auto length = std::make_unique<WORD>(WORD{0x1000});
  const auto key = std::make_unique<std::int32_t>(7);
  const auto get = [&](BYTE keyLength) {
    return EmbeddedCall()(kGetEqual, client.block.data(), client.record.data(),
                          reinterpret_cast<ULONG*>(length.get()), key.get(), keyLength, 1);
  };
  EXPECT_EQ(get(255), kSuccess);
  EXPECT_EQ(*length, kPartyLength);
  EXPECT_EQ(get(4), kSuccess);
  EXPECT_EQ(get(3), kKeyBufferTooShort);

  const auto unterminatedName = std::make_unique<std::array<char, kMaxKeyLength>>();
  unterminatedName->fill('x');
  EXPECT_EQ(EmbeddedCall()(kOpen, client.block.data(), nullptr, nullptr, unterminatedName.get(),
                           kMaxKeyLength, kOpenNormal),
            kFileNotFound);
}

}  // namespace
}  // namespace recordmanager_tests
