#include <gmock/gmock.h>

#include <thread>

#include "platform/windows_api.h"

namespace {

TEST(LastError, BelongsToItsThread) {
  SetLastError(ERROR_MORE_DATA);
  std::thread([] { SetLastError(ERROR_ACCESS_DENIED); }).join();
  EXPECT_EQ(GetLastError(), ERROR_MORE_DATA);
}

TEST(ErrorMode, IsHandedBackWhenItIsReplaced) {
  const UINT before = SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  EXPECT_EQ(SetErrorMode(before), SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
}

}  // namespace
