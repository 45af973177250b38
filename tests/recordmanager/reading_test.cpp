// Get Equal to Get Last: order, duplicates, the place after each read.
#include <array>
#include <cstring>
#include <memory>

#include "host.h"
#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

class Reading : public PartyFile {
 protected:
  Reading() {
    // Numbers 1 to 6 in this order.
    for (const Party& party :
         {MakeParty(7, "M", -3), MakeParty(-5, "G", 256), MakeParty(7, "M ", 1),
          MakeParty(300, "\xC4ra", 0), MakeParty(7, "MA", -32768), MakeParty(-5, "a", 32767)}) {
      EXPECT_EQ(client.Insert(party), kSuccess);
    }
    EXPECT_EQ(client.Close(), kSuccess);
    EXPECT_EQ(client.Open(path), kSuccess);
  }
};

TEST_F(Reading, GoesAlongEachKeyInItsOrderWithDuplicatesAsTheyWereInserted) {
  const struct {
    int key;
    const char* up;
    const char* down;
  } cases[] = {{kByNumber, "1 2 3 4 5 6", "6 5 4 3 2 1"},
               {kByCase, "2 6 1 3 5 4", "4 5 3 1 6 2"},
               {kByRole, "2 1 3 5 6 4", "4 6 5 3 1 2"},
               {kByRank, "5 1 4 3 2 6", "6 2 3 4 1 5"}};
  for (const auto& [key, up, down] : cases) {
    EXPECT_EQ(Walk(client, key), up) << "key " << key;
    EXPECT_EQ(Walk(client, key, kGetLast, kGetPrevious), down) << "key " << key;
  }
}

TEST_F(Reading, FindsTheRecordThatTheOperationMeans) {
  const struct {
    WORD operation;
    int caseId;
    int status;
    int number;
  } cases[] = {
      {kGetEqual, 7, kSuccess, 1},          {kGetEqual, 8, kKeyNotFound, 0},
      {kGetEqual, -5, kSuccess, 2},         {kGetGreater, 7, kSuccess, 4},
      {kGetGreater, -6, kSuccess, 2},       {kGetGreater, 300, kEndOfFile, 0},
      {kGetGreaterOrEqual, 7, kSuccess, 1}, {kGetGreaterOrEqual, 8, kSuccess, 4},
      {kGetLess, 7, kSuccess, 6},           {kGetLess, -5, kEndOfFile, 0},
      {kGetLessOrEqual, 7, kSuccess, 5},    {kGetLessOrEqual, 299, kSuccess, 5},
      {kGetLessOrEqual, -6, kEndOfFile, 0},
  };
  for (const auto& [operation, caseId, status, number] : cases) {
    SCOPED_TRACE("operation " + std::to_string(operation) + ", case " + std::to_string(caseId));
    client.record = {};
    EXPECT_EQ(client.Get(operation, kByCase, caseId), status);
    EXPECT_EQ(client.record.number, number);
    if (status == kSuccess) {
      EXPECT_EQ(std::memcmp(client.key.data(), &client.record.caseId, 4), 0);
    }
  }
}

TEST_F(Reading, ComparesStringsByTheirWholeLength) {
  EXPECT_EQ(client.Get(kGetEqual, kByRole, std::string("MA")), kSuccess);
  EXPECT_EQ(client.record.number, 5);
  EXPECT_EQ(client.Get(kGetEqual, kByRole, std::string("m")), kKeyNotFound);
}

TEST_F(Reading, KnowsItsPlace) {
  EXPECT_EQ(client.Call(kGetNext, kByCase), kInvalidPositioning);
  EXPECT_EQ(client.Call(kGetEqual, 4), kInvalidKeyNumber);
  EXPECT_EQ(client.Call(kGetEqual, -1), kInvalidKeyNumber);

  EXPECT_EQ(client.Get(kGetEqual, kByCase, 300), kSuccess);
  EXPECT_EQ(client.Call(kGetNext, kByNumber), kDifferentKeyNumber);
  EXPECT_EQ(client.Call(kGetNext, kByCase), kEndOfFile);
  EXPECT_EQ(client.Call(kGetNext, kByCase), kEndOfFile);
  EXPECT_EQ(client.Update(), kInvalidPositioning);
  EXPECT_EQ(client.Call(kGetPrevious, kByCase), kSuccess);
  EXPECT_EQ(client.record.number, 4);

  EXPECT_EQ(client.Call(kGetFirst, kByCase), kSuccess);
  EXPECT_EQ(client.Call(kGetPrevious, kByCase), kEndOfFile);
  EXPECT_EQ(client.Call(kGetNext, kByCase), kSuccess);
  EXPECT_EQ(client.record.number, 2);

  EXPECT_EQ(client.Get(kGetEqual, kByCase, 8), kKeyNotFound);
  EXPECT_EQ(client.Call(kGetNext, kByCase), kInvalidPositioning);
}

TEST_F(Reading, GivesNoDataIntoABufferThatIsTooShort) {
  client.record.number = 99;
  client.length = kPartyLength - 1;
  EXPECT_EQ(client.Get(kGetEqual, kByCase, 7), kDataBufferLength);
  EXPECT_EQ(client.record.number, 99);
  EXPECT_EQ(client.Get(kGetEqual, kByCase, 8), kKeyNotFound);
  client.length = 0xFFFF;
  EXPECT_EQ(client.Get(kGetEqual, kByCase, 7), kSuccess);
  EXPECT_EQ(client.length, kPartyLength);
}

TEST_F(Reading, TakesTheLengthFromTheLowHalfAndWritesNothingElse) {
  client.length = 0xDEAD0000U | kPartyLength;
  EXPECT_EQ(client.Get(kGetEqual, kByCase, 7), kSuccess);
  EXPECT_EQ(client.length, 0xDEAD0000U | kPartyLength);

  // A caller with a 16-bit variable and nothing behind it.
  const auto shortLength = std::make_unique<WORD>(WORD{0x1000});
  EXPECT_EQ(host::EntryPoint()(kGetFirst, client.block.data(), &client.record,
                               reinterpret_cast<ULONG*>(shortLength.get()), client.key.data(), 255,
                               kByCase),
            kSuccess);
  EXPECT_EQ(*shortLength, kPartyLength);
}

TEST_F(Reading, TouchesNoMoreOfTheKeyBufferThanTheKey) {
  const auto key = std::make_unique<std::int32_t>(7);
  const auto get = [&](BYTE keyLength) {
    return host::EntryPoint()(kGetEqual, client.block.data(), &client.record, &client.length,
                              key.get(), keyLength, kByCase);
  };
  EXPECT_EQ(get(255), kSuccess);
  EXPECT_EQ(get(4), kSuccess);
  EXPECT_EQ(get(3), kKeyBufferTooShort);
}

TEST_F(Reading, LeavesACopiedBlockAPlaceOfItsOwn) {
  EXPECT_EQ(client.Get(kGetEqual, kByCase, 7), kSuccess);
  Client copy = client;
  EXPECT_EQ(copy.Call(kGetNext, kByCase), kSuccess);
  EXPECT_EQ(copy.record.number, 3);
  EXPECT_EQ(copy.Call(kGetNext, kByCase), kSuccess);
  EXPECT_EQ(copy.record.number, 5);
  EXPECT_EQ(client.Call(kGetNext, kByCase), kSuccess);
  EXPECT_EQ(client.record.number, 3);
}

TEST_F(Reading, OfAnEmptyFileEndsAtOnce) {
  const std::string empty = InFolder("EMPTY.KRV");
  ASSERT_EQ(Create(empty, DescribeParties()), kSuccess);
  Client other;
  ASSERT_EQ(other.Open(empty), kSuccess);
  for (const WORD operation : {kGetFirst, kGetLast, kGetGreater, kGetLessOrEqual}) {
    EXPECT_EQ(other.Get(operation, kByCase, 7), kEndOfFile);
  }
  EXPECT_EQ(other.Get(kGetEqual, kByCase, 7), kKeyNotFound);
  EXPECT_EQ(other.Close(), kSuccess);
}

}  // namespace
}  // namespace recordmanager_tests
