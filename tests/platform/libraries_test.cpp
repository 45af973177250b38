#include <gmock/gmock.h>

#include <fstream>

#include "platform/windows_api.h"
#include "testkit/temporary_folder.h"

namespace {

TEST(Library, ThatIsMissingOrBrokenLeavesItsReason) {
  const UINT mode = SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  const testkit::TemporaryFolder folder;
  for (const char* inEitherWorld : {"broken.dll", "libbroken.so"}) {
    std::ofstream(folder.Path() / inEitherWorld) << "not a library";
  }
  const std::pair<std::string, DWORD> rows[] = {
      {"qlx99_missing.dll", ERROR_MOD_NOT_FOUND},
      {"C:\\missing\\qlx99.dll", ERROR_MOD_NOT_FOUND},
      {"missing/qlx99.dll", ERROR_MOD_NOT_FOUND},
      {(folder.Path() / "missing.dll").string(), ERROR_MOD_NOT_FOUND},
      {(folder.Path() / "broken.dll").string(), ERROR_BAD_EXE_FORMAT}};
  for (const auto& [name, reason] : rows) {
    EXPECT_EQ(LoadLibraryA(name.c_str()), nullptr) << name;
    EXPECT_EQ(GetLastError(), reason) << name;
  }
  SetErrorMode(mode);
}

}  // namespace
