// Insert, Update, Delete: numbers, keys, the place afterwards; conflicts; transactions.
#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

class Writing : public PartyFile {
 protected:
  struct Step {
    Client* client;
    const char* script;
    const char* outcome;
  };

  static void Take(const std::vector<Step>& steps) {
    for (const auto& [who, script, outcome] : steps) EXPECT_EQ(who->Do(script), outcome) << script;
  }
};

TEST_F(Writing, GivesNumbersAndKeepsTheOrderAndThePlace) {
  const struct {
    const char* script;
    const char* outcome;
  } rows[] = {
      // New numbers follow the highest, as long as there are any.
      {"insert case=1, insert number=70000, insert number=70000, insert case=1 case, delete,"
       "insert case=1",
       "1 70000 !5 70001 ok 70001"},
      {"insert number=2147483647, insert case=1, walk number", "2147483647 !5 2147483647"},
      // What is refused changes nothing.
      {"update, delete", "!8 !8"},
      {"insert case=1, insert case=2 4, update case=2 4, update number=12, walk number, equal "
       "case=1",
       "1 !6 !6 !10 1 1"},
      // A record with a new key goes to the end of its group, and the place with it; with the same
      // key it stays where it is.
      {"insert case=1, insert case=2, insert case=2, insert case=1, equal case=1,"
       "update case=2 case, next case, walk case",
       "1 2 3 4 1 ok !9 4 2 3 1"},
      {"insert case=1, insert case=1, equal case=1, update counter=5 case, next case, walk case",
       "1 2 1 ok 2 1 2"},
      // Written by another key or by none, the place on the key that was read stays.
      {"insert case=1, insert case=2, equal case=1, update, next number, next case",
       "1 2 1 ok !7 2"},
      {"insert case=1, insert case=2, insert case=3, equal case=1, update case=9 -1, next case,"
       "insert case=10 -1, next case",
       "1 2 3 1 ok 2 4 3"},
      // Reading goes on from a deleted record in both directions.
      {"insert, insert, insert, equal number=2, delete, delete, update, next number",
       "1 2 3 2 ok !8 !8 3"},
      {"insert, insert, equal number=2, delete, previous number, walk number", "1 2 2 ok 1 1"},
  };
  int i = 0;
  for (const auto& [script, outcome] : rows) {
    const std::string fresh = InFolder("FRESH" + std::to_string(++i));
    ASSERT_EQ(Create(fresh), kSuccess);
    EXPECT_EQ(Opened(fresh).Do(script), outcome) << script;
  }
}

TEST_F(Writing, TouchesTheCallersBuffersOnlyWhenItIsDone) {
  EXPECT_EQ(client.Do("insert number=2147483647, insert"), "2147483647 !5");
  EXPECT_EQ(client.record.number, 0) << "a number that was given and not written";
  client.length = sizeof(Party) - 1;
  EXPECT_EQ(client.Do("insert, equal number=2147483647"), "!22 !22");
  client.length = sizeof(Party);
  EXPECT_EQ(client.Do("equal number=2147483647"), "2147483647");
  client.length = sizeof(Party) - 1;
  EXPECT_EQ(client.Do("update"), "!22");
  client.length = sizeof(Party);
  client.key.fill(0x55);
  EXPECT_EQ(client.Do("update -1"), "ok");
  EXPECT_EQ(client.key[0], 0x55) << "no key is given back";
}

TEST_F(Writing, KeepsAutoincrementKeysOfTwoBytesWithinTheirField) {
  const std::string small = InFolder("SMALL.KRV");
  ASSERT_EQ(Create(small, DescribeFile(sizeof(Party), {DescribeKey(0, 2, 0, kAutoincrementKey)})),
            kSuccess);
  // 0x7FFE, then 0x11110000 twice.
  EXPECT_EQ(Opened(small).Do(
                "insert number=32766 -1, insert number=286326784 -1, insert number=286326784 -1"),
            "32766 286359551 !5");
}

TEST_F(Writing, FindsOutWhoWroteInBetween) {
  Client& other = Opened(path);
  Take({{&client, "insert case=7, equal number=1", "1 1"},
        {&other, "equal number=1", "1"},
        {&client, "update counter=1, update", "ok ok"},  // one's own change is no conflict
        {&other, "update counter=2, delete, equal number=1", "!80 !80 1"}});
  EXPECT_EQ(other.record.counter, 1);
  // Deleting and numbering anew gives the same number, but not the record that was read.
  Take({{&client, "delete", "ok"},
        {&other, "update", "!80"},
        {&client, "insert case=7", "1"},
        {&other, "update, delete", "!80 !80"}});
}

TEST_F(Writing, InATransactionIsKeptOrDroppedAsAWhole) {
  ASSERT_EQ(Create(InFolder("SECOND.KRV")), kSuccess);
  Client& second = Opened(InFolder("SECOND.KRV"));
  Take({{&client, "end, abort, insert, begin, begin", "!39 !39 1 ok !37"},
        {&client, "insert, insert number=1, walk number", "2 !5 1 2"},  // goes on after a refusal
        {&second, "insert", "1"},
        {&client, "abort, walk number", "ok 1"},
        {&second, "walk number", "!9"},
        {&client, "begin, insert", "ok 2"},
        {&second, "insert, close", "1 ok"}});
  EXPECT_EQ(Create(InFolder("OTHER.KRV")), kNotAllowedInTransaction);
  EXPECT_EQ(client.Do("end, walk number"), "ok 1 2");
  EXPECT_EQ(Opened(InFolder("SECOND.KRV")).Do("walk number"), "1");
}

TEST_F(Writing, InATransactionKeepsOtherClientsOfTheProcessOut) {
  Client other;
  other.id = {1};
  ASSERT_EQ(other.Open(path), kSuccess);
  Take({{&client, "begin, insert", "ok 1"},
        {&other, "first number, end", "!85 !85"},
        {&client, "end", "ok"},
        {&other, "first number, close", "1 ok"}});
}

// The versions given in an aborted transaction are given again; who has seen them must not take
// them for these.
TEST_F(Writing, LeavesNoTrustInWhatATransactionTookBack) {
  Client& other = Opened(path);
  Take({{&client, "insert, begin, update counter=1, abort", "1 ok ok ok"},
        {&other, "equal number=1", "1"}});
  EXPECT_EQ(other.record.counter, 0);
  Take({{&other, "update", "ok"}, {&client, "update, next number", "!80 !9"}});
}

}  // namespace
}  // namespace recordmanager_tests
