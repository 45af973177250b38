// The registration text file that stands in for a registry.
#include "platform/registry_file.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <iterator>
#include <string>
#include <utility>

#include "platform/windows_api.h"
#include "testkit/process.h"
#include "tests/office/sample_office.h"

namespace {

using platform::RegistryFile;

using namespace std::string_literals;

// By hand, and by other programs.
constexpr auto kAsWritten =
    "REGEDIT4\r\n"
    "; the office's folders in C:\\hex\\\r\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Options]\r\n"
    "@=\"nameless\"\r\n"
    "\"DataRoot\"=\"C:\\\\data \\\"new\\\"\"\r\n"
    "  \"Spaced\" = \"x=1\" \r\n"
    "\"Unterminated\"=hex(1):61, \\ \r\n"
    "  62,\\\r\n"
    "  63\r\n"
    "\"Number\"=dword:0000002a ; answers\r\n"
    "\"Bytes\"=hex:ff,00\r\n"
    "; of another key\r\n"
    "\r\n"
    "[HKEY_CURRENT_USER\\Other]\r\n"
    "\"Unterminated\"=hex(2):64,\\";

TEST(RegistrationText, IsUnderstoodInEveryForm) {
  const RegistryFile file = RegistryFile::Parse(kAsWritten);
  const struct {
    const char* name;
    std::string bytes;
    DWORD type;
  } rows[] = {{"", "nameless\0"s, 1},       {"dataRoot", "C:\\data \"new\"\0"s, 1},
              {"Spaced", "x=1\0"s, 1},      {"Unterminated", "abc", 1},
              {"Number", "\x2A\0\0\0"s, 4}, {"Bytes", "\xFF\0"s, 3}};
  for (const auto& [name, bytes, type] : rows) {
    const auto* const value = file.Find("HKEY_LOCAL_MACHINE\\Software\\Options", name);
    ASSERT_NE(value, nullptr) << name;
    EXPECT_EQ(value->bytes, bytes) << name;
    EXPECT_EQ(value->type, type) << name;
  }
  RegistryFile ofLinux = RegistryFile::Parse("REGEDIT4\n");
  ofLinux.Set("Key", {"name", "text\0"s});
  EXPECT_EQ(ofLinux.Format(), "REGEDIT4\n\n[Key]\n\"name\"=\"text\"\n");
}

class RegistrationFile : public testing::Test {
 protected:
  std::filesystem::path Path() const { return registry_.Folder() / "office.reg"; }

  // Creates the key and, when that succeeds, sets the value to "new".
  static LSTATUS Set(const char* name) {
    HKEY key = nullptr;
    LSTATUS status = RegCreateKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Options", 0, nullptr,
                                     REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &key, nullptr);
    if (status == ERROR_SUCCESS) {
      status = RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>("new"), 4);
      RegCloseKey(key);
    }
    return status;
  }

  testkit::PrivateRegistry registry_;
};

TEST_F(RegistrationFile, KeepsWhatAChangeDoesNotConcern) {
  using std::filesystem::perms;
  const std::filesystem::path file = registry_.Folder() / "kept" / "own.reg";
  std::filesystem::create_directory(file.parent_path());
  testkit::WriteAll(file, kAsWritten);
  std::filesystem::permissions(file, perms::owner_read | perms::owner_write);
  std::filesystem::create_symlink("kept/own.reg", Path());
  for (const char* name : {"spaced", "unTerminated", "added"}) {
    EXPECT_EQ(Set(name), LSTATUS{ERROR_SUCCESS});
  }
  std::string expected = kAsWritten;
  for (const auto& [old, by] : {std::pair{"  \"Spaced\" = \"x=1\" ", "\"Spaced\"=\"new\""},
                                std::pair{"hex(1):61, \\ \r\n  62,\\\r\n  63", "\"new\""},
                                std::pair{"ff,00\r\n", "ff,00\r\n\"added\"=\"new\"\r\n"}}) {
    expected.replace(expected.find(old), std::string(old).size(), by);
  }
  expected += "\r\n\r\n";  // or what comes next would continue the last value
  EXPECT_EQ(testkit::ReadAll(file), expected);
  EXPECT_TRUE(std::filesystem::is_symlink(Path()));
  EXPECT_EQ(std::filesystem::status(file).permissions(), perms::owner_read | perms::owner_write);
  const std::filesystem::directory_iterator files(file.parent_path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "a draft was left behind";
}

TEST_F(RegistrationFile, IsNotReplacedWhenItCannotBeRead) {
  for (const std::string& unicode : {"\xFF\xFER\0E\0G\0"s, "\xFE\xFF\0R\0E\0G"s}) {
    testkit::WriteAll(Path(), unicode);
    EXPECT_EQ(Set("value"), LSTATUS{ERROR_ACCESS_DENIED});
    EXPECT_EQ(testkit::ReadAll(Path()), unicode);
  }
}

TEST(QlxRegistryFile, IsNamedWithWhatIsWrongInIt) {
  const testkit::PrivateRegistry registry;
  const std::string folder = registry.Folder().string();
  for (const char* command : {"office|check", "letter|1", "call|UserInit"}) {
    setenv("QLX99_REGISTRY", (folder + "/none.reg").c_str(), 1);
    EXPECT_THAT(Qlx(command).err, testing::HasSubstr("QLX99_REGISTRY names " + folder +
                                                     "/none.reg, and there is no "));
    setenv("QLX99_REGISTRY", folder.c_str(), 1);
    EXPECT_THAT(Qlx(command).err, testing::HasSubstr(folder + " cannot be read: it is a folder."));
  }
  EXPECT_THAT(Qlx("setup|" + folder).err, testing::HasSubstr("cannot be read: it is a folder."));
  setenv("QLX99_REGISTRY", (folder + "/hand.reg").c_str(), 1);
  testkit::WriteAll(folder + "/hand.reg", R"([HKEY_LOCAL_MACHINE\SOFTWARE\Quorvane\Stelvora\Options]
"DataRoot"=dword:1 ; a number
"DocuRoot"="here" ; a comment)");
  EXPECT_THAT(Qlx("office|check").out,
              testing::AllOf(testing::HasSubstr("DataRoot        is a number (REG_DWORD) in the "),
                             testing::HasSubstr("  DocuRoot        here\n")));
}

}  // namespace
