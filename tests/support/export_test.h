// The fixtures of all tests of exports. A test arranges the office, calls the library as a macro
// does, and looks at what it got and at what the user saw:
//
//   TEST_F(UserListTest, CountsTheUsers) {
//     office.Has<UserRecord>("number: 17");
//     EXPECT_EQ(library->UserInit(), 1);
//   }
#pragma once

#include <gmock/gmock.h>

#include "support/caller_buffer.h"
#include "support/manager_script.h"
#include "support/office.h"
#include "support/user.h"

namespace qlx99::tests {

// Dispatches the messages that wait for this thread, as its host does. Returns the exit code of the
// one that tells the host to end, or 0.
inline int DispatchAsTheHost() {
  MSG message{};
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) return static_cast<int>(message.wParam);
    DispatchMessageA(&message);
  }
  return 0;
}

// With the embedded record manager.
class ExportTest : public testing::Test {
 protected:
  void TearDown() override {
    library.Free();
    UnloadRecordManagers();
    user.ExpectNothingLeft();
  }

  FoundManagers managers;
  Office office;
  User user;
  Library library;
};

// With the scripted one, over the embedded one.
class ScriptedExportTest : public ExportTest {
 protected:
  void TearDown() override {
    EXPECT_THAT(manager.OpenFiles(), testing::IsEmpty());
    ExportTest::TearDown();
  }

  ManagerScript manager{managers};
};

// In the office that most tests of exports begin with: a case with all that can belong to it, among
// records of others.
class ExampleOfficeTest : public ScriptedExportTest {
 protected:
  ExampleOfficeTest();
};

}  // namespace qlx99::tests
