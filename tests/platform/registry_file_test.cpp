#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "platform/registry_file.h"
#include "platform/windows_api.h"
#include "support/private_registry.h"

namespace {

using qlx99::tests::PrivateRegistry;

using platform::RegistryFile;
using platform::RegistryValue;
using namespace std::string_view_literals;

constexpr auto kOptions = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Options)";

/// Type and bytes, as "1:text"; nothing when the value is not there.
std::optional<std::string> Value(const RegistryFile& file, const char* name) {
  const RegistryValue* value = file.Find(kOptions, name);
  return value == nullptr ? std::nullopt
                          : std::optional(std::to_string(value->type) + ':' + value->bytes);
}

constexpr auto kFile =
    "REGEDIT4\r\n"
    "\r\n"
    "; the office's folders in C:\\hex\\\r\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Options]\r\n"
    "@=\"unnamed\"\r\n"
    "\"DataRoot\"=\"C:\\\\data \\\"new\\\"\"\r\n"
    "  \"Spaced\" = \"x=1\" \r\n"
    "\"Count\"=dword:0000010a\r\n"
    "\"Bytes\"=hex:01,ff,\\\r\n"
    "  00\r\n"
    "\"Unterminated\"=hex(1):61,62\r\n";

TEST(RegistrationText, HoldsEveryKindOfValue) {
  std::string text = kFile;
  for (const char* ends : {"CRLF", "LF"}) {
    SCOPED_TRACE(ends);
    const RegistryFile file = RegistryFile::Parse(text);
    EXPECT_EQ(Value(file, ""), "1:unnamed\0"sv);
    EXPECT_EQ(Value(file, "DataRoot"), "1:C:\\data \"new\"\0"sv);
    EXPECT_EQ(Value(file, "Spaced"), "1:x=1\0"sv);
    EXPECT_EQ(Value(file, "Count"), "4:\x0A\x01\0\0"sv);
    EXPECT_EQ(Value(file, "Bytes"), "3:\x01\xFF\0"sv);
    EXPECT_EQ(Value(file, "Unterminated"), "1:ab");
    std::erase(text, '\r');
  }
}

TEST(RegistrationText, IsReadBackAsItWasWritten) {
  const RegistryFile file = RegistryFile::Parse(kFile);
  const RegistryFile again = RegistryFile::Parse(file.Format());
  for (const char* name : {"", "DataRoot", "Spaced", "Count", "Bytes", "Unterminated"}) {
    EXPECT_EQ(Value(again, name), Value(file, name)) << name;
  }
}

TEST(RegistrationText, PassesOverLinesThatMeanNothing) {
  for (const char* line :
       {"rubbish", R"("x)", R"("x")", R"("x"=)", R"("x"="open)", R"("x"="a"b)", R"("x"=dword:xyz)",
        R"("x"=dword:123456789)", R"("x"=hex:1g)", R"("x"=hex:100)", R"("x"=hex():00)",
        R"("x"=hex(:00)", R"("x"=-)", "=", R"("\)", "[", "@", "\xFF\xFE"}) {
    SCOPED_TRACE(line);
    const std::string text = std::string("[") + kOptions + "]\n" + line + "\n\"after\"=\"ok\"\n";
    const RegistryFile file = RegistryFile::Parse(text);
    EXPECT_EQ(Value(file, "x"), std::nullopt);
    EXPECT_EQ(Value(file, "after"), "1:ok\0"sv);
  }
  EXPECT_EQ(Value(RegistryFile::Parse("\"outside\"=\"of any key\""), "outside"), std::nullopt);
}

TEST(RegistrationText, MayEndAnywhere) {
  const std::string_view whole = kFile;
  const std::string_view beforeCount = whole.substr(0, whole.find("\"Count"));
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const RegistryFile file = RegistryFile::Parse(std::string(whole.substr(0, length)));
    EXPECT_EQ(Value(file, "Spaced").has_value(), length + 3 >= beforeCount.size()) << length;
  }
}

class RegistrationFile : public testing::Test {
 protected:
  std::filesystem::path Path() const { return registry_.Folder() / "registry.reg"; }

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

  PrivateRegistry registry_;
};

TEST_F(RegistrationFile, IsMadeWhenTheFirstKeyIsCreated) {
  HKEY key = nullptr;
  DWORD disposition = 0;
  EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE", 0, KEY_READ, &key),
            LSTATUS{ERROR_FILE_NOT_FOUND});
  ASSERT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Options", 0, nullptr,
                            REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &key, &disposition),
            LSTATUS{ERROR_SUCCESS});
  RegCloseKey(key);
  EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
  EXPECT_TRUE(std::filesystem::exists(Path()));
  EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Options", 0, KEY_READ, &key),
            LSTATUS{ERROR_SUCCESS});
  RegCloseKey(key);
}

TEST_F(RegistrationFile, KeepsWhatAChangeDoesNotConcern) {
  std::ofstream(Path(), std::ios::binary)
      << kFile << "[HKEY_CURRENT_USER\\Other]\r\n\"a\"=\"b\"\r\n";
  ASSERT_EQ(Set("dataroot"), LSTATUS{ERROR_SUCCESS});
  std::ifstream stream(Path(), std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  const RegistryFile file = RegistryFile::Parse(text);
  EXPECT_EQ(Value(file, "DataRoot"), "1:new\0"sv);
  EXPECT_EQ(Value(file, "Count"), "4:\x0A\x01\0\0"sv);
  EXPECT_NE(file.Find("HKEY_CURRENT_USER\\Other", "a"), nullptr);
  const std::filesystem::directory_iterator files(registry_.Folder());
  EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "a draft was left behind";
}

TEST_F(RegistrationFile, IsReadAnewWhenItHasChanged) {
  ASSERT_EQ(Set("value"), LSTATUS{ERROR_SUCCESS});
  HKEY key = nullptr;
  RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Options", 0, KEY_READ, &key);
  std::ofstream(Path(), std::ios::binary)
      << "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Options]\n\"value\"=\"by hand\"\n";
  DWORD size = 0;
  EXPECT_EQ(RegQueryValueExA(key, "value", nullptr, nullptr, nullptr, &size),
            LSTATUS{ERROR_SUCCESS});
  EXPECT_EQ(size, sizeof "by hand");
  RegCloseKey(key);
}

TEST_F(RegistrationFile, ThatCannotBeWrittenIsAccessDenied) {
  std::ofstream(registry_.Folder() / "file") << "no folder";
  setenv("QLX99_REGISTRY", (registry_.Folder() / "file" / "registry.reg").c_str(), 1);
  EXPECT_EQ(Set("value"), LSTATUS{ERROR_ACCESS_DENIED});
}

TEST_F(RegistrationFile, LiesAmongTheUsersSettingsByDefault) {
  unsetenv("QLX99_REGISTRY");
  setenv("XDG_CONFIG_HOME", registry_.Folder().c_str(), 1);
  EXPECT_EQ(Set("value"), LSTATUS{ERROR_SUCCESS});
  unsetenv("XDG_CONFIG_HOME");
  EXPECT_TRUE(std::filesystem::exists(registry_.Folder() / "qlx99" / "registry.reg"));
}

}  // namespace
