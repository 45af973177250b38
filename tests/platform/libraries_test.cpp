#include <gmock/gmock.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/windows_api.h"
#include "support/record_managers.h"
#include "support/world.h"
#include "test_library.h"

namespace {

TEST(Library, HearsOnceOfItsAttachmentByWhateverNameItIsLoaded) {
  const TestLibrary library;
  ASSERT_NE(library.Handle(), nullptr);
  for (const char* name :
       {"platform_test_library.dll", "platform_test_library", "PLATFORM_TEST_LIBRARY.DLL"}) {
    EXPECT_EQ(GetModuleHandleA(name), library.Handle()) << name;
    EXPECT_EQ(LoadLibraryA(name), library.Handle()) << name;
    EXPECT_TRUE(FreeLibrary(library.Handle()));
  }
  EXPECT_EQ(library.Heard().count, 1);
  EXPECT_EQ(library.Heard().module, library.Handle());
  EXPECT_TRUE(library.Heard().objectsWereReady);
}

TEST(Library, IsLoadedAgainByThePathThatItTells) {
  const TestLibrary library;
  std::array<WCHAR, 1000> path{};
  const DWORD length = GetModuleFileNameW(library.Handle(), path.data(), path.size());
  EXPECT_EQ(length, std::char_traits<WCHAR>::length(path.data()));
  EXPECT_EQ(LoadLibraryExW(path.data(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH), library.Handle());
  EXPECT_TRUE(FreeLibrary(library.Handle()));
  GetModuleFileNameW(nullptr, path.data(), path.size());
  EXPECT_EQ(std::filesystem::path(path.data()).parent_path(), qlx99::tests::world::ProgramFolder());
}

TEST(Library, IsDetachedWhenTheLastUserFreesIt) {
  static int detachments = 0;
  HMODULE library = LoadLibraryA(TestLibrary::kName);
  TestLibrary().Heard().atDetachment = [] { ++detachments; };
  EXPECT_EQ(detachments, 0);
  EXPECT_TRUE(FreeLibrary(library));
  EXPECT_EQ(detachments, 1);
  EXPECT_EQ(GetModuleHandleA(TestLibrary::kName), nullptr);
  EXPECT_FALSE(FreeLibrary(library));
}

TEST(Library, HasOnlyFunctionsOfItsOwn) {
  const TestLibrary library;
  for (const char* name : {"NoSuchFunction", "heard", "GetLastError", "malloc", ""}) {
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(GetProcAddress(library.Handle(), name), nullptr) << name;
    EXPECT_EQ(GetLastError(), ERROR_PROC_NOT_FOUND) << name;
  }
}

TEST(Library, ThatIsMissingOrBrokenLeavesItsReason) {
  const auto failsToLoad = [](const std::string& name, DWORD reason) {
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(LoadLibraryA(name.c_str()), nullptr) << name;
    EXPECT_EQ(GetLastError(), reason) << name;
  };
  for (const char* name :
       {"qlx99_missing.dll", "qlx99_missing", "C:\\missing\\qlx99.dll", "missing/qlx99.dll"}) {
    failsToLoad(name, ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(GetModuleHandleA(name), nullptr) << name;
    EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND) << name;
  }

  const UINT mode = SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  const auto folder = std::filesystem::temp_directory_path() / "qlx99_library_folder";
  std::filesystem::create_directories(folder);
  const std::string inFolder = (folder / "qlx99_rubbish.dll").string();
  failsToLoad(inFolder, ERROR_MOD_NOT_FOUND);
  for (const char* inEitherWorld : {"qlx99_rubbish.dll", "libqlx99_rubbish.so"}) {
    std::ofstream(folder / inEitherWorld) << "not a library";
  }
  failsToLoad(inFolder, ERROR_BAD_EXE_FORMAT);
  failsToLoad("qlx99_rubbish.dll", ERROR_MOD_NOT_FOUND);
  EXPECT_TRUE(SetDllDirectoryA(folder.string().c_str()));
  failsToLoad("qlx99_rubbish.dll", ERROR_BAD_EXE_FORMAT);
  // It stands in the place of the current one.
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder);
  EXPECT_TRUE(SetDllDirectoryA(before.string().c_str()));
  failsToLoad("qlx99_rubbish.dll", ERROR_MOD_NOT_FOUND);
  EXPECT_TRUE(SetDllDirectoryA(nullptr));
  failsToLoad("qlx99_rubbish.dll", ERROR_BAD_EXE_FORMAT);
  std::filesystem::current_path(before);
  qlx99::tests::FindTheEmbeddedManager();  // again
  std::filesystem::remove_all(folder);
  SetErrorMode(mode);
}

}  // namespace
