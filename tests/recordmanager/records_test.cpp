// Reading and writing: order, duplicates, the place after each operation; numbers, conflicts and
// transactions.
#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

class Records : public PartyFile {
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

TEST_F(Records, AreFoundAlongEachKeyFromEachPlace) {
  Take(
      {{&client,
        "insert case=7 role=M rank=-3, insert case=-5 role=G rank=256, insert case=7 role=M rank=1,"
        "insert case=300 role=\xC4ra rank=0, insert case=7 role=MA rank=-32768,"
        "insert case=-5 role=a rank=32767",
        "1 2 3 4 5 6"}});
  const std::pair<const char*, const char*> rows[] = {
      // Each key in its order, duplicates as they were inserted.
      {"first, next*, last, previous*", "1 2 3 4 5 6 !9 6 5 4 3 2 1 !9"},
      {"first case, next* case, last case, previous* case", "2 6 1 3 5 4 !9 4 5 3 1 6 2 !9"},
      {"first role, next* role, last role, previous* role", "2 1 3 5 6 4 !9 4 6 5 3 1 2 !9"},
      {"first rank, next* rank, last rank, previous* rank", "5 1 4 3 2 6 !9 6 2 3 4 1 5 !9"},
      // From a value.
      {"equal case=7, equal case=8, equal case=-5", "1 !4 2"},
      {"greater case=7, greater case=-6, greater case=300", "4 2 !9"},
      {"from case=7, from case=8, from case=301", "1 4 !9"},
      {"less case=7, less case=-5, upto case=7, upto case=299, upto case=-6", "6 !9 5 5 !9"},
      {"equal role=MA, equal role=m, equal role=M", "5 !4 1"},
      // The place.
      {"next case, previous case, equal 4, equal -1", "!8 !8 !6 !6"},
      {"equal case=300, next number, next case, next case, previous case", "4 !7 !9 !9 4"},
      {"first case, previous case, next case", "2 !9 2"},
      {"equal case=300, next case, update, delete", "4 !9 !8 !8"},
      {"equal case=7, equal case=8, next case", "1 !4 !8"},
  };
  for (const auto& [script, outcome] : rows) Take({{&Opened(path), script, outcome}});

  EXPECT_EQ(client.Do("equal case=7"), "1");
  Client copy = client;  // has a place of its own
  Take({{&copy, "next case, next case", "3 5"}, {&client, "next case", "3"}});

  ASSERT_EQ(Create(InFolder("EMPTY.KRV")), kSuccess);
  Take({{&Opened(InFolder("EMPTY.KRV")),
         "first case, last case, greater case=7, upto case=7, equal case=7", "!9 !9 !9 !9 !4"}});
}

TEST_F(Records, GetNumbersAndKeepTheirOrderAndTheReadersPlace) {
  const std::pair<const char*, const char*> rows[] = {
      // New numbers follow the highest, as long as there are any.
      {"insert case=1, insert number=70000, insert number=70000, insert case=1 case, delete, "
       "insert",
       "1 70000 !5 70001 ok 70001"},
      {"insert number=2147483647, insert, first, next", "2147483647 !5 2147483647 !9"},
      // What is refused changes nothing.
      {"update, delete, insert case=1, insert case=2 4, update case=2 4, update number=12",
       "!8 !8 1 !6 !6 !10"},
      {"insert case=1, insert case=2 4, update number=12, first, next, equal case=1",
       "1 !6 !10 1 !9 1"},
      // A record with a new key goes to the end of its group, and the place with it; with the same
      // key it stays where it is.
      {"insert case=1, insert case=2, insert case=2, insert case=1, equal case=1,"
       "update case=2 case, next case, first case, next* case",
       "1 2 3 4 1 ok !9 4 2 3 1 !9"},
      {"insert, insert, equal case=0, update counter=5 case, next case, first case, next* case",
       "1 2 1 ok 2 1 2 !9"},
      // Written by another key or by none, the place on the key that was read stays.
      {"insert case=1, insert case=2, equal case=1, update, next, next case", "1 2 1 ok !7 2"},
      {"insert case=1, insert case=2, insert case=3, equal case=1, update case=9 -1, next case,"
       "insert case=10 -1, next case",
       "1 2 3 1 ok 2 4 3"},
      // Reading goes on from a deleted record in both directions.
      {"insert, insert, insert, equal number=2, delete, delete, update, next",
       "1 2 3 2 ok !8 !8 3"},
      {"insert, insert, equal number=2, delete, previous, next", "1 2 2 ok 1 !9"},
      // What was looked up a moment ago.
      {"insert, insert, equal number=3, equal number=3, equal number=2, equal number=2, next",
       "1 2 !4 !4 2 2 !9"},
  };
  int i = 0;
  for (const auto& [script, outcome] : rows) {
    const std::string fresh = InFolder("FRESH" + std::to_string(++i));
    ASSERT_EQ(Create(fresh), kSuccess);
    Take({{&Opened(fresh), script, outcome}});
  }
}

// An autoincrement key of two bytes, with 1 in the bytes behind it.
TEST_F(Records, GetNumbersThatStayWithinTheirKey) {
  const std::string small = InFolder("SMALL.KRV");
  ASSERT_EQ(Create(small, DescribeFile(kPartyLength, {DescribeKey(0, 2, kAutoincrementKey)})),
            kSuccess);
  Take({{&Opened(small), "insert number=32766 -1, insert number=65536 -1, insert number=65536 -1",
         "32766 98303 !5"}});
}

TEST_F(Records, TellWhoWroteInBetween) {
  Client& other = Opened(path);
  Take({{&client, "insert case=7, equal number=1", "1 1"},
        {&other, "equal number=1", "1"},
        {&client, "update counter=1, update", "ok ok"},  // one's own change is no conflict
        {&other, "update counter=2, delete, equal number=1", "!80 !80 1"}});
  EXPECT_EQ(other.Counter(), 1);
  // Deleting and numbering anew gives the same number, but not the record that was read.
  Take({{&client, "delete", "ok"},
        {&other, "update", "!80"},
        {&client, "insert case=7", "1"},
        {&other, "update, delete", "!80 !80"}});
}

TEST_F(Records, OfATransactionAreKeptOrDroppedTogether) {
  ASSERT_EQ(Create(InFolder("SECOND.KRV")), kSuccess);
  Client& second = Opened(InFolder("SECOND.KRV"));
  Take({{&client, "end, abort, insert, begin, begin", "!39 !39 1 ok !37"},
        {&client, "insert, insert number=1, first, next*", "2 !5 1 2 !9"},
        {&second, "insert", "1"},
        {&client, "abort, first, next", "ok 1 !9"},
        {&second, "first", "!9"},
        {&client, "begin, insert", "ok 2"},
        {&second, "insert, close", "1 ok"}});
  EXPECT_EQ(Create(InFolder("OTHER.KRV")), kNotAllowedInTransaction);
  Take({{&client, "end, first, next*", "ok 1 2 !9"},
        {&Opened(InFolder("SECOND.KRV")), "first, next", "1 !9"}});
}

TEST_F(Records, OfATransactionAreKeptFromOtherClientsOfTheProcess) {
  Client other;
  other.id = {1};
  ASSERT_EQ(other.Open(path), kSuccess);
  Take({{&client, "begin, insert", "ok 1"},
        {&other, "first, end", "!85 !85"},
        {&client, "end", "ok"},
        {&other, "first, close", "1 ok"}});
}

// The versions given in an aborted transaction are given again; who has seen them must not take
// them for these.
TEST_F(Records, OfAnAbortedTransactionAreTrustedNoMore) {
  Client& other = Opened(path);
  Take({{&client, "insert, begin, update counter=1, abort", "1 ok ok ok"},
        {&other, "equal number=1", "1"}});
  EXPECT_EQ(other.Counter(), 0);
  Take({{&other, "update", "ok"}, {&client, "update, next", "!80 !9"}});
}

// Nor do they hide from a walk what is inserted later, under the numbers that they had.
TEST_F(Records, OfAnAbortedTransactionHideNoOther) {
  Client& other = Opened(path);
  Client walk = client;
  Take({{&walk, "insert case=7, begin, insert case=7, insert case=7 case", "1 ok 2 3"}});
  Client back = walk;
  Client deleted = walk;
  Take({{&deleted, "delete, abort", "ok ok"},
        {&other, "insert case=7, insert case=7", "2 3"},
        {&back, "previous case", "1"},
        {&walk, "next case, next case, next case", "2 3 !9"},
        {&deleted, "next case, previous case", "2 1"}});
}

TEST_F(Records, ThatAnAbortedTransactionHasNotWrittenAreStillTrusted) {
  Client& other = Opened(path);
  Take({{&client, "insert, insert, equal number=1", "1 2 1"},
        {&other, "begin, equal number=2, update counter=1, equal number=1", "ok 2 ok 1"},
        {&other, "abort, update counter=2", "ok ok"},
        {&client, "update", "!80"},  // by what was written since
        {&client, "equal number=2", "2"},
        {&other, "begin, insert, abort, update", "ok 3 ok !80"},
        {&client, "begin, update, end", "ok ok ok"},
        {&other, "begin, insert, abort", "ok 3 ok"},
        {&client, "update, delete", "ok ok"}});
}

}  // namespace
}  // namespace recordmanager_tests
