#include "party_file.h"

#include "host.h"

namespace recordmanager_tests {

PartyFile::PartyFile() {
  path = InFolder("PARTIES.KRV");
  EXPECT_EQ(Create(path, DescribeParties()), btrieve::kSuccess);
  EXPECT_EQ(client.Open(path), btrieve::kSuccess);
}

PartyFile::~PartyFile() {
  client.Close();
  qlx99::tests::ReleaseEmbedded();  // which keeps files open for a while
}

std::string Walk(Client client, int keyNumber, WORD start, WORD step) {
  std::string numbers;
  int status = client.Call(start, keyNumber);
  for (; status == btrieve::kSuccess; status = client.Call(step, keyNumber)) {
    numbers += (numbers.empty() ? "" : " ") + std::to_string(client.record.number);
  }
  EXPECT_EQ(status, btrieve::kEndOfFile);
  return numbers;
}

}  // namespace recordmanager_tests
