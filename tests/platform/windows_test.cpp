#include <gmock/gmock.h>

#include "platform/windows_api.h"

namespace {

TEST(WindowMessage, HasOneNumberForOneNameWhateverItsCase) {
  const UINT first = RegisterWindowMessageA("qlx99 first test message");
  EXPECT_THAT(first, testing::AllOf(testing::Ge(0xC000U), testing::Le(0xFFFFU)));
  EXPECT_EQ(RegisterWindowMessageA("QLX99 First Test Message"), first);
  EXPECT_NE(RegisterWindowMessageA("qlx99 second test message"), first);
  EXPECT_EQ(RegisterWindowMessageA(""), 0U);
}

TEST(Window, ThatDoesNotExistHasNoTitle) {
  SetLastError(ERROR_SUCCESS);
  EXPECT_FALSE(SetWindowTextA(nullptr, "Titel"));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
}

}  // namespace
