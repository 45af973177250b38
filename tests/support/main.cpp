// The program of all tests, which is also the worker of those that need another process.
#include <gmock/gmock.h>

#include "support/library.h"
#include "support/user.h"
#include "tests/recordmanager/party_file.h"

namespace {

using namespace qlx99::tests;

int RunAllTests() {
  WatchTheScreen();
  FindTheEmbeddedManager();
  const int result = RUN_ALL_TESTS();
  UnloadRecordManagers();
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace recordmanager_tests;
  const std::string option = argc > 1 ? argv[1] : "";
  if (option == kWorkerOption) return Work({argv + 2, argv + argc});
  testing::InitGoogleMock(&argc, argv);
  // They run in a process of their own, see tests/office/commands_test.cpp.
  if (GTEST_FLAG_GET(filter) == "*") GTEST_FLAG_SET(filter, "-Qlx*");
  return RunAllTests();
}
