// Whether the tests' own tools see what they are for.
#include <gtest/gtest.h>

#include "support/export_test.h"
#include "users/user_file.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;

using SupportTest = ScriptedExportTest;

TEST_F(SupportTest, ScriptSeesEveryCallOfAnExport) {
  office.Has<UserRecord>({{UserRecord::number, 17}, {UserRecord::name, "Müller"}});
  CallerBuffer buffer;
  EXPECT_EQ(library->UserNext("1", buffer), -1);
  EXPECT_THAT(buffer, HoldsRecordOnly("Müller||||17"));
  EXPECT_THAT(manager.CallTexts(),
              ElementsAre("Open ZTUSER.KRV", "GetFirst ZTUSER.KRV 0", "Close ZTUSER.KRV"));
}

}  // namespace
}  // namespace qlx99::tests
