#include "party_file.h"

#include <atomic>
#include <chrono>
#include <system_error>

namespace recordmanager_tests {

PartyFile::PartyFile() {
  static std::atomic<int> count = 0;
  const auto now = std::chrono::system_clock::now().time_since_epoch().count();
  folder = std::filesystem::temp_directory_path() /
           ("parties-" + std::to_string(now) + '-' + std::to_string(++count));
  std::filesystem::create_directory(folder);
  path = InFolder("PARTIES.KRV");
  EXPECT_EQ(Create(path, DescribeParties()), btrieve::kSuccess);
  EXPECT_EQ(client.Open(path), btrieve::kSuccess);
}

PartyFile::~PartyFile() {
  client.Close();
  std::error_code ignored;  // where open files cannot be deleted, the host's clean-up will
  std::filesystem::remove_all(folder, ignored);
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
