// The position block and the other buffers are in the caller's hands: whatever comes back must be
// recognised or refused, and nothing beyond them is touched.
#include <atomic>
#include <cstring>
#include <memory>
#include <thread>

#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;
using testkit::EmbeddedCall;

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
  Client stranger = client;
  stranger.id = {1};
  EXPECT_EQ(stranger.Do("first"), "!3");
  const Block old = client.block;
  EXPECT_EQ(ReadWith(old), "1");
  EXPECT_EQ(client.Do("close, close"), "ok !3");
  EXPECT_EQ(ReadWith(old), "!3");
  ASSERT_EQ(client.Open(path), kSuccess);
  EXPECT_EQ(ReadWith(old), "!3") << "another opening of the same file";
}

TEST_F(Buffers, MayBeMissing) {
  enum Buffer { kBlock = 1, kData = 2, kLength = 4, kKey = 8, kNone = 0 };
  const auto without = [&](int missing, const std::vector<WORD>& operations) {
    const auto given = [&](Buffer which, auto* buffer) {
      return (missing & which) != 0 ? nullptr : buffer;
    };
    std::string statuses;
    for (const WORD operation : operations) {
      const int status = EmbeddedCall()(
          operation, given(kBlock, client.block.data()), given(kData, client.record.data()),
          given(kLength, &client.length), given(kKey, client.key.data()), kMaxKeyLength, 0);
      statuses += std::to_string(status) + ' ';
    }
    return statuses;
  };
  EXPECT_EQ(without(kBlock, {kGetFirst, kOpen}), "3 3 ");
  EXPECT_EQ(without(kData, {kGetFirst, kInsert, kUpdate, kStat, kCreate}), "22 22 22 22 22 ");
  EXPECT_EQ(without(kLength, {kGetFirst, kStat}), "22 22 ");
  EXPECT_EQ(without(kKey, {kGetFirst, kInsert, kOpen}), "21 21 11 ");
  EXPECT_EQ(without(kNone, {16, 105, 0xFFFF}), "1 1 1 ");
  EXPECT_EQ(without(kData | kLength | kKey, {kDelete, kClose}), "0 0 ");
}

// Otherwise the record would lie beneath a key that it has not.
TEST_F(Buffers, MayBeChangedByAnotherThreadWhileTheyAreWritten) {
  constexpr int kTimes = 2000;
  std::atomic<bool> ends = false;
  std::thread other([&] {
    volatile char& caseNumber = client.record[4];
    while (!ends) caseNumber = static_cast<char>(caseNumber ^ 0x55);
  });
  for (int i = 0; i < kTimes && !HasFailure(); ++i) {
    EXPECT_EQ(client.Call(kUpdate, 0), kSuccess);
    Client reader = client;
    EXPECT_EQ(reader.Do("equal number=1"), "1");
    EXPECT_EQ(reader.Do("equal case=" + std::to_string(reader.record[4])), "1");
  }
  ends = true;
  other.join();
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
}

}  // namespace
}  // namespace recordmanager_tests
