// The registration text file that stands in for a registry.
#include "platform/registry_file.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/windows_api.h"
#include "testkit/private_registry.h"

namespace {

using platform::RegistryFile;

using namespace std::string_literals;

constexpr auto kAsWritten =
    "REGEDIT4\r\n"
    "; the office's folders in C:\\hex\\\r\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Options]\r\n"
    "\"DataRoot\"=\"C:\\\\data \\\"new\\\"\"\r\n"
    "  \"Spaced\" = \"x=1\" \r\n"
    "\"Unterminated\"=hex(1):61, 62\r\n"
    "[HKEY_CURRENT_USER\\Other]\r\n";
constexpr auto kAsFormatted =
    "REGEDIT4\r\n\r\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Options]\r\n"
    "\"DataRoot\"=\"C:\\\\data \\\"new\\\"\"\r\n"
    "\"Spaced\"=\"x=1\"\r\n"
    "\"Unterminated\"=hex(1):61,62\r\n\r\n"
    "[HKEY_CURRENT_USER\\Other]\r\n";

TEST(RegistrationText, IsUnderstoodInEveryFormAndWrittenInOne) {
  std::string withoutReturns = kAsWritten;
  std::erase(withoutReturns, '\r');
  for (const std::string& text :
       {std::string(kAsWritten), withoutReturns, std::string(kAsFormatted)}) {
    EXPECT_EQ(RegistryFile::Parse(text).Format(), kAsFormatted);
    // Wherever it ends, nothing behind is read.
    for (std::size_t length = 0; length < text.size(); ++length)
      RegistryFile::Parse(std::string(text, 0, length));
  }
}

TEST(RegistrationText, MayHaveLinesThatMeanNothing) {
  const std::string key = "[HKEY_LOCAL_MACHINE\\Key]\r\n";
  for (const char* line :
       {"rubbish", R"("x)", R"("x")", R"("x"=)", R"("x"="open)", R"("x"="a"b)", R"("x"=dword:1)",
        R"("x"=hex(1):1g)", R"("x"=hex(1):100)", R"("x"=hex(1:00)", R"("x"=-)", "=", R"("\)", "[",
        "[]", "@", "\xFF\xFE"}) {
    EXPECT_EQ(
        RegistryFile::Parse("\"of no\"=\"key\"\r\n" + key + line + "\r\n\"a\"=\"b\"").Format(),
        "REGEDIT4\r\n\r\n" + key + "\"a\"=\"b\"\r\n")
        << line;
  }
}

TEST(RegistrationText, GivesBackTheBytesThatWereStoredWhateverTheCaseOfTheirName) {
  for (const std::string& bytes :
       {"C:\\data \"old\"\0"s, "\0"s, ""s, "two\r\nlines\0"s, "M\xFCller [x]=1;\0"s, "open"s}) {
    RegistryFile file;
    file.Set("HKEY_LOCAL_MACHINE\\Key\\Options", {"Value", bytes});
    file = RegistryFile::Parse(file.Format());
    const auto* value = file.Find("hkey_local_machine\\key\\OPTIONS", "vALUE");
    ASSERT_NE(value, nullptr) << bytes;
    EXPECT_EQ(value->bytes, bytes);
    EXPECT_TRUE(file.Has("HKEY_LOCAL_MACHINE\\key"));
    EXPECT_FALSE(file.Has("HKEY_LOCAL_MACHINE\\Ke"));
    EXPECT_FALSE(file.Has("HKEY_LOCAL_MACHINE\\Key\\Options 2"));
  }
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
  std::ofstream(Path(), std::ios::binary) << kAsWritten;  // by hand
  EXPECT_EQ(Set("spaced"), LSTATUS{ERROR_SUCCESS});
  std::string expected = kAsFormatted;
  expected.replace(expected.find("x=1"), 3, "new");
  std::ifstream stream(Path(), std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), expected);
  const std::filesystem::directory_iterator files(registry_.Folder());
  EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "a draft was left behind";
}

TEST_F(RegistrationFile, LiesWhereTheEnvironmentSays) {
  const std::string folder = registry_.Folder().string();
  std::ofstream(folder + "/file") << "no folder";
  setenv("QLX99_REGISTRY", (folder + "/file/registry.reg").c_str(), 1);
  EXPECT_EQ(Set("value"), LSTATUS{ERROR_ACCESS_DENIED});
  unsetenv("QLX99_REGISTRY");
  setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
  EXPECT_EQ(Set("value"), LSTATUS{ERROR_SUCCESS});
  unsetenv("XDG_CONFIG_HOME");
  EXPECT_TRUE(std::filesystem::exists(folder + "/qlx99/registry.reg"));
}

}  // namespace
