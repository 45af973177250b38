#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/windows_api.h"
#include "support/record_managers.h"
#include "test_library.h"

namespace {

TEST(Library, HearsOfItsAttachmentUnderTheHandleThatTheLoaderGets) {
  const TestLibrary library;
  ASSERT_NE(library.Handle(), nullptr);
  EXPECT_EQ(library.Find<HINSTANCE()>("AttachedAs")(), library.Handle());
  EXPECT_TRUE(library.Find<bool()>("ObjectsWereReadyAtAttachment")());
}

TEST(Library, IsAttachedOnceHoweverOftenItIsLoaded) {
  const TestLibrary first;
  const TestLibrary second;
  EXPECT_EQ(first.Handle(), second.Handle());
  EXPECT_EQ(second.Find<int()>("Attachments")(), 1);
}

TEST(Library, IsDetachedWhenTheLastUserFreesIt) {
  int detachments = 0;
  HMODULE library = LoadLibraryA(TestLibrary::kName);
  ASSERT_EQ(LoadLibraryA(TestLibrary::kName), library);
  std::bit_cast<void (*)(int*)>(GetProcAddress(library, "CountDetachmentsIn"))(&detachments);
  EXPECT_TRUE(FreeLibrary(library));
  EXPECT_EQ(detachments, 0);
  EXPECT_TRUE(FreeLibrary(library));
  EXPECT_EQ(detachments, 1);
  EXPECT_EQ(GetModuleHandleA(TestLibrary::kName), nullptr);
  EXPECT_FALSE(FreeLibrary(library));
}

TEST(Library, IsFoundByAnyFormOfItsName) {
  const TestLibrary library;
  for (const char* name :
       {"platform_test_library.dll", "platform_test_library", "PLATFORM_TEST_LIBRARY.DLL"}) {
    EXPECT_EQ(GetModuleHandleA(name), library.Handle()) << name;
    HMODULE again = LoadLibraryA(name);
    EXPECT_EQ(again, library.Handle()) << name;
    FreeLibrary(again);
  }
}

TEST(Library, FindsOnlyFunctionsOfItsOwn) {
  const TestLibrary library;
  for (const char* name : {"NoSuchFunction", "attachedas", "GetLastError", "malloc", ""}) {
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(GetProcAddress(library.Handle(), name), nullptr) << name;
    EXPECT_EQ(GetLastError(), ERROR_PROC_NOT_FOUND) << name;
  }
}

TEST(Library, ThatIsMissingLeavesItsReason) {
  for (const char* name :
       {"qlx99_missing.dll", "qlx99_missing", "C:\\missing\\qlx99.dll", "missing/qlx99.dll"}) {
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(LoadLibraryA(name), nullptr) << name;
    EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND) << name;
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(GetModuleHandleA(name), nullptr) << name;
    EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND) << name;
  }
}

class LibraryFolder : public testing::Test {
 protected:
  LibraryFolder() { std::filesystem::create_directories(folder_); }
  ~LibraryFolder() override {
    qlx99::tests::FindTheEmbeddedManager();  // again
    std::filesystem::remove_all(folder_);
  }

  /// A file that no loader takes, under the names that a library has in both worlds.
  void HasRubbish() const {
    for (const char* name : {"qlx99_rubbish.dll", "libqlx99_rubbish.so"}) {
      std::ofstream(folder_ / name) << "not a library";
    }
  }

  std::filesystem::path folder_ = std::filesystem::temp_directory_path() / "qlx99_library_folder";
};

TEST_F(LibraryFolder, WithABrokenLibraryIsToldFromOneWithout) {
  const UINT mode = SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  const std::string path = (folder_ / "x").string();
  const std::string library = path.substr(0, path.size() - 1) + "qlx99_rubbish.dll";
  EXPECT_EQ(LoadLibraryA(library.c_str()), nullptr);
  EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
  HasRubbish();
  EXPECT_EQ(LoadLibraryA(library.c_str()), nullptr);
  EXPECT_EQ(GetLastError(), ERROR_BAD_EXE_FORMAT);
  SetErrorMode(mode);
}

TEST_F(LibraryFolder, IsSearchedOnceItIsNamed) {
  const UINT mode = SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  HasRubbish();
  EXPECT_EQ(LoadLibraryA("qlx99_rubbish.dll"), nullptr);
  EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
  EXPECT_TRUE(SetDllDirectoryA(folder_.string().c_str()));
  EXPECT_EQ(LoadLibraryA("qlx99_rubbish.dll"), nullptr);
  EXPECT_EQ(GetLastError(), ERROR_BAD_EXE_FORMAT);
  SetErrorMode(mode);
}

}  // namespace
