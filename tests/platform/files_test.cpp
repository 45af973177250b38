#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/windows_api.h"

namespace {

TEST(CurrentDirectory, IsSetWithEitherSeparator) {
  const std::filesystem::path before = std::filesystem::current_path();
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "qlx99_current";
  std::filesystem::create_directories(folder / "inner");
  EXPECT_TRUE(SetCurrentDirectoryA((folder.string() + "\\inner").c_str()));
  EXPECT_TRUE(std::filesystem::equivalent(std::filesystem::current_path(), folder / "inner"));
  EXPECT_FALSE(SetCurrentDirectoryA((folder.string() + "/missing").c_str()));
  EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
  std::filesystem::current_path(before);
  std::filesystem::remove_all(folder);
}

TEST(FileAccess, IsAskedWithEitherSeparator) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "qlx99_access";
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "there.txt") << "x";
  const std::string path = folder.string();
  for (const char* separator : {"\\", "/"}) {
    for (const int mode : {0, 2, 4, 6}) {
      EXPECT_EQ(_access((path + separator + "there.txt").c_str(), mode), 0) << separator << mode;
      EXPECT_EQ(_access((path + separator + "missing.txt").c_str(), mode), -1) << separator << mode;
      EXPECT_EQ(errno, ENOENT);
    }
  }
  EXPECT_EQ(_access(path.c_str(), 0), 0);
  EXPECT_EQ(_access("", 0), -1);
  std::filesystem::remove_all(folder);
}

}  // namespace
