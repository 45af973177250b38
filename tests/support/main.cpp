#include <gmock/gmock.h>

#include "support/record_managers.h"
#include "support/screen.h"
#include "support/world.h"
#include "testkit/temporary_folder.h"
#include "tests/recordmanager/worker.h"

namespace qlx99::tests {
namespace {

// Ends the program when a test hangs. A busy machine takes a minute for some of them.
constexpr std::chrono::minutes kPatience{5};

class Watchdog : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo& test) override {
    world::SetDeadline(kPatience, std::string(test.test_suite_name()) + "." + test.name());
  }
};

int RunAllTests() {
  testing::UnitTest::GetInstance()->listeners().Append(new Watchdog);  // which owns it
  WatchTheScreen();
  FindTheEmbeddedManager();
  const int result = RUN_ALL_TESTS();
  UnloadRecordManagers();
  RemoveTemporaryFolders();
  return result;
}

}  // namespace
}  // namespace qlx99::tests

int main(int argc, char** argv) {
  using namespace recordmanager_tests;
  const std::string option = argc > 1 ? argv[1] : "";
  if (option == kWorkerOption || option == kLeaverOption) {
    qlx99::tests::world::SetDeadline(std::chrono::minutes(1),
                                     "a worker");  // its test may have ended badly
    const std::vector<std::string> arguments(argv + 2, argv + argc);
    return option == kWorkerOption ? Work(arguments) : Leave(arguments);
  }
  testing::InitGoogleMock(&argc, argv);
  // They run in a process of their own, see tests/office/commands_test.cpp.
  if (GTEST_FLAG_GET(filter) == "*") GTEST_FLAG_SET(filter, "-Qlx*");
  return qlx99::tests::RunAllTests();
}
