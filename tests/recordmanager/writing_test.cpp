// Insert, Update, Delete: numbers, keys, conflicts, and the place afterwards.
#include <cstring>

#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

class Writing : public PartyFile {};

TEST_F(Writing, NumbersNewRecordsAfterTheHighest) {
  EXPECT_EQ(client.Insert(MakeParty(1)), kSuccess);
  EXPECT_EQ(client.record.number, 1);
  EXPECT_EQ(std::memcmp(client.key.data(), &client.record.number, 4), 0);

  Party given = MakeParty(1);
  given.number = 70000;
  EXPECT_EQ(client.Insert(given), kSuccess);
  EXPECT_EQ(client.record.number, 70000);
  EXPECT_EQ(client.Insert(given), kDuplicateKey);

  EXPECT_EQ(client.Insert(MakeParty(1), kByCase), kSuccess);
  EXPECT_EQ(client.record.number, 70001);
  EXPECT_EQ(std::memcmp(client.key.data(), &client.record.caseId, 4), 0);
  EXPECT_EQ(client.Delete(), kSuccess);
  EXPECT_EQ(client.Insert(MakeParty(1)), kSuccess);
  EXPECT_EQ(client.record.number, 70001);
}

TEST_F(Writing, EndsWhenTheNumbersAreUsedUp) {
  Party last = MakeParty(1);
  last.number = 0x7FFFFFFF;
  EXPECT_EQ(client.Insert(last), kSuccess);
  EXPECT_EQ(client.Insert(MakeParty(1)), kDuplicateKey);
  EXPECT_EQ(client.record.number, 0);
  EXPECT_EQ(Walk(client, kByNumber), "2147483647");
}

TEST_F(Writing, RefusesWhatCannotBeWritten) {
  EXPECT_EQ(client.Update(), kInvalidPositioning);
  EXPECT_EQ(client.Delete(), kInvalidPositioning);
  ASSERT_EQ(client.Insert(MakeParty(1)), kSuccess);

  EXPECT_EQ(client.Insert(MakeParty(2), 4), kInvalidKeyNumber);
  EXPECT_EQ(client.Update(4), kInvalidKeyNumber);
  client.record = MakeParty(2);
  client.record.number = 12;
  EXPECT_EQ(client.Update(), kModifiableKey);
  client.length = kPartyLength - 1;
  EXPECT_EQ(client.Insert(MakeParty(2)), kDataBufferLength);
  client.record.number = 1;
  EXPECT_EQ(client.Update(), kDataBufferLength);

  client.length = kPartyLength;
  EXPECT_EQ(Walk(client, kByNumber), "1");
  EXPECT_EQ(client.Get(kGetEqual, kByNumber, 1), kSuccess);
  EXPECT_EQ(client.record.caseId, 1);
}

TEST_F(Writing, PutsARecordWithANewKeyAtTheEndOfItsGroup) {
  for (const int caseId : {1, 2, 2, 1}) {
    ASSERT_EQ(client.Insert(MakeParty(caseId)), kSuccess);
  }
  ASSERT_EQ(client.Get(kGetEqual, kByCase, 1), kSuccess);
  client.record.caseId = 2;
  EXPECT_EQ(client.Update(kByCase), kSuccess);
  EXPECT_EQ(Walk(client, kByCase), "4 2 3 1");
  EXPECT_EQ(client.Call(kGetNext, kByCase), kEndOfFile) << "the place moves with the key";

  ASSERT_EQ(client.Get(kGetEqual, kByCase, 2), kSuccess);
  client.record.counter = 5;
  EXPECT_EQ(client.Update(kByCase), kSuccess);
  EXPECT_EQ(Walk(client, kByCase), "4 2 3 1") << "the same key keeps its place";
  EXPECT_EQ(client.Call(kGetNext, kByCase), kSuccess);
  EXPECT_EQ(client.record.number, 3);
}

TEST_F(Writing, KeepsThePlaceOfTheKeyThatWasRead) {
  for (const int caseId : {1, 2, 3}) {
    ASSERT_EQ(client.Insert(MakeParty(caseId)), kSuccess);
  }
  ASSERT_EQ(client.Get(kGetEqual, kByCase, 1), kSuccess);
  EXPECT_EQ(client.Update(kByNumber), kSuccess);
  EXPECT_EQ(client.Call(kGetNext, kByNumber), kDifferentKeyNumber);

  ASSERT_EQ(client.Get(kGetEqual, kByCase, 1), kSuccess);
  client.record.caseId = 9;
  client.key.fill(0x55);
  EXPECT_EQ(client.Update(-1), kSuccess);
  EXPECT_EQ(client.key[0], 0x55) << "no key is given back";
  EXPECT_EQ(client.Call(kGetNext, kByCase), kSuccess);
  EXPECT_EQ(client.record.number, 2);

  EXPECT_EQ(client.Insert(MakeParty(10), -1), kSuccess);
  EXPECT_EQ(client.Call(kGetNext, kByCase), kSuccess);
  EXPECT_EQ(client.record.number, 3);
}

TEST_F(Writing, ReadsOnFromADeletedRecord) {
  for (int i = 0; i < 3; ++i) {
    ASSERT_EQ(client.Insert(MakeParty(7)), kSuccess);
  }
  ASSERT_EQ(client.Get(kGetEqual, kByNumber, 2), kSuccess);
  EXPECT_EQ(client.Delete(), kSuccess);
  EXPECT_EQ(client.Delete(), kInvalidPositioning);
  EXPECT_EQ(client.Update(), kInvalidPositioning);
  Client back = client;
  EXPECT_EQ(client.Call(kGetNext, kByNumber), kSuccess);
  EXPECT_EQ(client.record.number, 3);
  EXPECT_EQ(back.Call(kGetPrevious, kByNumber), kSuccess);
  EXPECT_EQ(back.record.number, 1);
}

TEST_F(Writing, FindsOutWhoWroteInBetween) {
  ASSERT_EQ(client.Insert(MakeParty(7)), kSuccess);
  Client other;
  ASSERT_EQ(other.Open(path), kSuccess);
  ASSERT_EQ(other.Get(kGetEqual, kByNumber, 1), kSuccess);
  ASSERT_EQ(client.Get(kGetEqual, kByNumber, 1), kSuccess);

  client.record.counter = 1;
  EXPECT_EQ(client.Update(), kSuccess);
  EXPECT_EQ(client.Update(), kSuccess) << "one's own change is no conflict";
  other.record.counter = 2;
  EXPECT_EQ(other.Update(), kConflict);
  EXPECT_EQ(other.Delete(), kConflict);
  EXPECT_EQ(other.Get(kGetEqual, kByNumber, 1), kSuccess);
  EXPECT_EQ(other.record.counter, 1);

  // Deleting and numbering anew gives the same number, but not the record that was read.
  EXPECT_EQ(client.Delete(), kSuccess);
  EXPECT_EQ(other.Update(), kConflict);
  EXPECT_EQ(client.Insert(MakeParty(7)), kSuccess);
  EXPECT_EQ(client.record.number, 1);
  EXPECT_EQ(other.Update(), kConflict);
  EXPECT_EQ(other.Delete(), kConflict);
  EXPECT_EQ(other.Close(), kSuccess);
}

TEST_F(Writing, KeepsAutoincrementKeysOfTwoBytesWithinTheirField) {
  const std::string small = InFolder("SMALL.KRV");
  ASSERT_EQ(Create(small, DescribeFile(kPartyLength, {DescribeKey(0, 2, 0, kAutoincrementKey)})),
            kSuccess);
  Client other;
  ASSERT_EQ(other.Open(small), kSuccess);
  Party party;
  party.number = 0x7FFE;
  EXPECT_EQ(other.Insert(party), kSuccess);
  party.number = 0x11110000;
  EXPECT_EQ(other.Insert(party), kSuccess);
  EXPECT_EQ(other.record.number, 0x11117FFF);
  EXPECT_EQ(other.Insert(party), kDuplicateKey);
  EXPECT_EQ(other.Close(), kSuccess);
}

}  // namespace
}  // namespace recordmanager_tests
