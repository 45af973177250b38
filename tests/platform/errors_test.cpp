#include <gmock/gmock.h>

#include <thread>

#include "platform/windows_api.h"

namespace {

TEST(LastError, IsNotSeenByAnotherThread) {
  SetLastError(ERROR_MORE_DATA);
  EXPECT_EQ(GetLastError(), ERROR_MORE_DATA);
  DWORD elsewhere = ERROR_MORE_DATA;
  std::thread([&] { elsewhere = GetLastError(); }).join();
  EXPECT_NE(elsewhere, ERROR_MORE_DATA);
}

TEST(ErrorMode, IsHandedBackWhenItIsReplaced) {
  const UINT before = SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  EXPECT_EQ(SetErrorMode(before), SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
}

}  // namespace
