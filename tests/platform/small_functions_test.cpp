// The functions of the layer that stand alone: last error, error mode, file access, current
// directory, message boxes.
#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <string>
#include <thread>

#include "platform/windows_api.h"
#include "support/text.h"
#include "support/user.h"

namespace {

using qlx99::tests::Wide;
using testing::ElementsAre;

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

TEST(FileAccess, IsAskedWithEitherSeparator) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "qlx99_access";
  std::filesystem::create_directories(folder / "there");
  for (const char* separator : {"\\", "/"}) {
    const std::string path = folder.string() + separator;
    for (const int mode : {0, 2, 4, 6}) {
      EXPECT_EQ(_access((path + "there").c_str(), mode), 0) << separator << mode;
      EXPECT_EQ(_access((path + "missing").c_str(), mode), -1) << separator << mode;
      EXPECT_EQ(errno, ENOENT);
    }
  }
  EXPECT_EQ(_access("", 0), -1);
  std::filesystem::remove_all(folder);
}

TEST(CurrentDirectory, IsSetWithEitherSeparator) {
  const std::filesystem::path before = std::filesystem::current_path();
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "qlx99_current";
  std::filesystem::create_directories(folder / "inner");
  EXPECT_TRUE(SetCurrentDirectoryA((folder.string() + "\\inner").c_str()));
  EXPECT_TRUE(std::filesystem::equivalent(std::filesystem::current_path(), folder / "inner"));
  EXPECT_FALSE(SetCurrentDirectoryA((folder.string() + "/missing").c_str()));
  std::array<WCHAR, 1000> current{};
  const DWORD length = GetCurrentDirectoryW(current.size(), current.data());
  EXPECT_EQ(length, std::char_traits<WCHAR>::length(current.data()));
  EXPECT_EQ(GetCurrentDirectoryW(0, nullptr), length + 1);
  EXPECT_TRUE(SetCurrentDirectoryW(Wide(folder.string()).c_str()));
  EXPECT_TRUE(std::filesystem::equivalent(std::filesystem::current_path(), folder));
  EXPECT_TRUE(SetCurrentDirectoryW(current.data()));
  EXPECT_TRUE(std::filesystem::equivalent(std::filesystem::current_path(), folder / "inner"));
  std::filesystem::current_path(before);
  std::filesystem::remove_all(folder);
}

TEST(MessageBoxes, ShowWhatTheirCallerWrote) {
  qlx99::tests::User user;
  EXPECT_EQ(MessageBoxW(nullptr, Wide("können ! ").c_str(), Wide("Systemmeldung !").c_str(),
                        MB_ICONHAND | MB_SYSTEMMODAL),
            IDOK);
  EXPECT_EQ(MessageBoxW(nullptr, nullptr, Wide("").c_str(), MB_OK), IDOK);
  EXPECT_THAT(user.Messages(),
              ElementsAre(qlx99::tests::MessageBox{"können ! ", "Systemmeldung !", 0x1010},
                          qlx99::tests::MessageBox{"", "", 0}));
}

}  // namespace
