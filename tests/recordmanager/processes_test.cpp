// Processes that get in each other's way. That they lose nothing is shown by qlx_stress.
#include <chrono>
#include <thread>

#include "party_file.h"
#include "worker.h"

namespace recordmanager_tests {
namespace {

using namespace btrieve;
using namespace std::chrono_literals;

class Processes : public PartyFile {
 protected:
  Processes() { EXPECT_EQ(client.Do("insert"), "1"); }
};

TEST_F(Processes, ReadButNeitherWriteNorReplaceWhatAnotherHolds) {
  const std::string flag = InFolder("held");
  Worker holder({path, "begin, insert, wait " + flag + ", end"});
  for (int i = 0; i < 2000 && !std::filesystem::exists(flag); ++i) std::this_thread::sleep_for(5ms);
  ASSERT_TRUE(std::filesystem::exists(flag));

  EXPECT_EQ(client.Do("first, next"), "1 !9");
  EXPECT_EQ(Create(InFolder("OTHER.KRV")), kSuccess);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(client.Do("insert"), "!84");
  const auto patience = std::chrono::steady_clock::now() - start;
  EXPECT_GT(patience, 1s);
  EXPECT_LT(patience, 10s);
  EXPECT_EQ(client.Do("begin"), "ok");
  for (int i = 0; i < 20; ++i) EXPECT_EQ(client.Do("insert"), "!84");
  EXPECT_EQ(client.Do("abort, close"), "ok ok");
  EXPECT_LT(std::chrono::steady_clock::now() - start, 2 * patience) << "impatient when repeated";
  EXPECT_EQ(Create(path), kFileInUse);

  std::filesystem::remove(flag);
  EXPECT_EQ(holder.Wait(), 0);
  EXPECT_EQ(Opened(path).Do("insert, first, next*"), "3 1 2 3 !9");
}

}  // namespace
}  // namespace recordmanager_tests
