// Begin, End and Abort Transaction.
#include "host.h"
#include "party_file.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;

class Transactions : public PartyFile {};

TEST_F(Transactions, KeepOrDropAllThatWasWritten) {
  ASSERT_EQ(client.Insert(MakeParty(1)), kSuccess);
  const std::string second = InFolder("SECOND.KRV");
  ASSERT_EQ(Create(second, DescribeParties()), kSuccess);
  Client other;
  ASSERT_EQ(other.Open(second), kSuccess);

  EXPECT_EQ(client.Call(kBeginTransaction), kSuccess);
  EXPECT_EQ(client.Insert(MakeParty(2)), kSuccess);
  EXPECT_EQ(other.Insert(MakeParty(2)), kSuccess);
  EXPECT_EQ(Walk(client, kByNumber), "1 2");
  EXPECT_EQ(client.Call(kAbortTransaction), kSuccess);
  EXPECT_EQ(Walk(client, kByNumber), "1");
  EXPECT_EQ(Walk(other, kByNumber), "");

  EXPECT_EQ(client.Call(kBeginTransaction), kSuccess);
  EXPECT_EQ(client.Insert(MakeParty(2)), kSuccess);
  EXPECT_EQ(other.Insert(MakeParty(2)), kSuccess);
  EXPECT_EQ(other.Close(), kSuccess);
  EXPECT_EQ(client.Call(kEndTransaction), kSuccess);
  EXPECT_EQ(Walk(client, kByNumber), "1 2");
  ASSERT_EQ(other.Open(second), kSuccess);
  EXPECT_EQ(Walk(other, kByNumber), "1");
  EXPECT_EQ(other.Close(), kSuccess);
}

TEST_F(Transactions, AreRefusedOutOfTurn) {
  EXPECT_EQ(client.Call(kEndTransaction), kNoTransaction);
  EXPECT_EQ(client.Call(kAbortTransaction), kNoTransaction);
  EXPECT_EQ(client.Call(kBeginTransaction), kSuccess);
  EXPECT_EQ(client.Call(kBeginTransaction), kTransactionActive);
  EXPECT_EQ(Create(InFolder("OTHER.KRV"), DescribeParties()), kNotAllowedInTransaction);
  EXPECT_EQ(client.Call(kEndTransaction), kSuccess);
}

TEST_F(Transactions, GoOnAfterARefusedWrite) {
  EXPECT_EQ(client.Call(kBeginTransaction), kSuccess);
  EXPECT_EQ(client.Insert(MakeParty(1)), kSuccess);
  EXPECT_EQ(client.Insert(client.record), kDuplicateKey);
  EXPECT_EQ(client.Insert(MakeParty(1)), kSuccess);
  EXPECT_EQ(client.Call(kEndTransaction), kSuccess);
  EXPECT_EQ(Walk(client, kByNumber), "1 2");
}

TEST_F(Transactions, KeepOtherClientsOfTheProcessOut) {
  std::array<std::uint8_t, kClientIdSize> someone{1};
  Client other;
  const auto call = [&](WORD operation) {
    return host::EntryPointWithClient()(operation, other.block.data(), &other.record, &other.length,
                                        other.key.data(), kMaxKeyLength, 0, someone.data());
  };
  path.copy(reinterpret_cast<char*>(other.key.data()), other.key.size());
  ASSERT_EQ(call(kOpen), kSuccess);
  EXPECT_EQ(client.Call(kBeginTransaction), kSuccess);
  EXPECT_EQ(client.Insert(MakeParty(1)), kSuccess);
  EXPECT_EQ(call(kGetFirst), kFileInUse);
  EXPECT_EQ(call(kEndTransaction), kFileInUse);
  EXPECT_EQ(client.Call(kEndTransaction), kSuccess);
  EXPECT_EQ(call(kGetFirst), kSuccess);
  EXPECT_EQ(call(kClose), kSuccess);
}

// The versions given in an aborted transaction are given again; who has seen them must not take
// them for these.
TEST_F(Transactions, LeaveNoTrustInWhatTheyTookBack) {
  ASSERT_EQ(client.Insert(MakeParty(1)), kSuccess);
  EXPECT_EQ(client.Call(kBeginTransaction), kSuccess);
  client.record.counter = 1;
  EXPECT_EQ(client.Update(), kSuccess);
  EXPECT_EQ(client.Call(kAbortTransaction), kSuccess);
  Client other;
  ASSERT_EQ(other.Open(path), kSuccess);
  ASSERT_EQ(other.Get(kGetEqual, kByNumber, 1), kSuccess);
  EXPECT_EQ(other.record.counter, 0);
  EXPECT_EQ(other.Update(), kSuccess);
  EXPECT_EQ(client.Update(), kConflict);
  EXPECT_EQ(client.Call(kGetNext, kByNumber), kEndOfFile);
  EXPECT_EQ(other.Close(), kSuccess);
}

}  // namespace
}  // namespace recordmanager_tests
