#include "support/export_test.h"

namespace qlx99::tests {

void ExportTest::TearDown() {
  library.Free();
  UnloadRecordManagers();
  user.ExpectNothingLeft();
}

void ScriptedExportTest::TearDown() {
  EXPECT_THAT(manager.OpenFiles(), testing::IsEmpty());
  ExportTest::TearDown();
}

}  // namespace qlx99::tests
