// The program of all tests, which is also the worker of those that need another process.
#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "support/library.h"
#include "support/user.h"
#include "tests/recordmanager/party_file.h"

namespace {

using namespace qlx99::tests;

using Clock = std::chrono::steady_clock;

// Ends the program when a test, or the worker of a test that ended badly, hangs. A busy machine
// takes a minute for some tests.
std::atomic<Clock::time_point> deadline;

void WatchTheClock(std::chrono::minutes patience) {
  deadline = Clock::now() + patience;
  std::thread([] {
    while (Clock::now() < deadline.load()) std::this_thread::sleep_for(std::chrono::seconds(1));
    const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
    std::cerr << (test == nullptr ? "a worker" : test->name()) << " takes too long" << std::endl;
    std::_Exit(EXIT_FAILURE);
  }).detach();
}

class Watchdog : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo& /*test*/) override {
    deadline = Clock::now() + std::chrono::minutes(5);
  }
};

int RunAllTests() {
  testing::UnitTest::GetInstance()->listeners().Append(new Watchdog);  // which owns it
  WatchTheClock(std::chrono::minutes(5));
  WatchTheScreen();
  FindTheEmbeddedManager();
  const int result = RUN_ALL_TESTS();
  UnloadRecordManagers();
  RemoveTemporaryFolders();
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace recordmanager_tests;
  const std::string option = argc > 1 ? argv[1] : "";
  if (option == kWorkerOption) {
    WatchTheClock(std::chrono::minutes(1));
    return Work({argv + 2, argv + argc});
  }
  testing::InitGoogleMock(&argc, argv);
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a thread watches the clock
  // They run in a process of their own, see tests/office/commands_test.cpp.
  if (GTEST_FLAG_GET(filter) == "*") GTEST_FLAG_SET(filter, "-Qlx*");
  return RunAllTests();
}
