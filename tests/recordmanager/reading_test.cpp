// Get Equal to Get Last: order, duplicates, the place after each read.
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
    EXPECT_EQ(client.Do("insert case=7 role=M rank=-3, insert case=-5 role=G rank=256,"
                        "insert case=7 role=M rank=1, insert case=300 role=\xC4ra rank=0,"
                        "insert case=7 role=MA rank=-32768, insert case=-5 role=a rank=32767"),
              "1 2 3 4 5 6");
  }
};

TEST_F(Reading, FindsWhatTheOperationMeansAndKnowsItsPlace) {
  const struct {
    const char* script;
    const char* outcome;
  } rows[] = {
      // Each key in its order, duplicates as they were inserted.
      {"walk number, back number", "1 2 3 4 5 6 6 5 4 3 2 1"},
      {"walk case, back case", "2 6 1 3 5 4 4 5 3 1 6 2"},
      {"walk role, back role", "2 1 3 5 6 4 4 6 5 3 1 2"},
      {"walk rank, back rank", "5 1 4 3 2 6 6 2 3 4 1 5"},
      // From a value.
      {"equal case=7, equal case=8, equal case=-5", "1 !4 2"},
      {"greater case=7, greater case=-6, greater case=300", "4 2 !9"},
      {"from case=7, from case=8, from case=301", "1 4 !9"},
      {"less case=7, less case=-5", "6 !9"},
      {"upto case=7, upto case=299, upto case=-6", "5 5 !9"},
      {"equal role=MA, equal role=m, equal role=M", "5 !4 1"},
      // The place.
      {"next case, previous case, equal 4, equal -1", "!8 !8 !6 !6"},
      {"equal case=300, next number, next case, next case, previous case", "4 !7 !9 !9 4"},
      {"first case, previous case, next case", "2 !9 2"},
      {"equal case=300, next case, update, delete", "4 !9 !8 !8"},
      {"equal case=7, equal case=8, next case", "1 !4 !8"},
  };
  for (const auto& [script, outcome] : rows) EXPECT_EQ(Opened(path).Do(script), outcome) << script;

  ASSERT_EQ(Create(InFolder("EMPTY.KRV")), kSuccess);
  EXPECT_EQ(Opened(InFolder("EMPTY.KRV"))
                .Do("first case, last case, greater case=7, upto case=7, equal case=7"),
            "!9 !9 !9 !9 !4");
}

TEST_F(Reading, LeavesACopiedBlockAPlaceOfItsOwn) {
  EXPECT_EQ(client.Do("equal case=7"), "1");
  Client copy = client;
  EXPECT_EQ(copy.Do("next case, next case"), "3 5");
  EXPECT_EQ(client.Do("next case"), "3");
}

TEST_F(Reading, GivesNoDataIntoABufferThatIsTooShort) {
  client.record.number = 99;
  client.length = sizeof(Party) - 1;
  EXPECT_EQ(client.Do("equal case=7, equal case=8"), "!22 !4");
  EXPECT_EQ(client.record.number, 99);
}

TEST_F(Reading, TakesTheLengthFromTheLowHalfAndWritesNothingElse) {
  for (const ULONG high : {0U, 0xDEAD0000U}) {
    client.length = high | 0xFFFF;
    EXPECT_EQ(client.Do("equal case=7"), "1");
    EXPECT_EQ(client.length, high | sizeof(Party));
  }
  // A caller with a 16-bit variable and a key of 4 bytes, and nothing behind them.
  const auto length = std::make_unique<WORD>(WORD{0x1000});
  const auto key = std::make_unique<std::int32_t>(7);
  const auto get = [&](BYTE keyLength) {
    return host::EntryPoint()(kGetEqual, client.block.data(), &client.record,
                              reinterpret_cast<ULONG*>(length.get()), key.get(), keyLength, 1);
  };
  EXPECT_EQ(get(255), kSuccess);
  EXPECT_EQ(*length, sizeof(Party));
  EXPECT_EQ(get(4), kSuccess);
  EXPECT_EQ(get(3), kKeyBufferTooShort);
}

}  // namespace
}  // namespace recordmanager_tests
