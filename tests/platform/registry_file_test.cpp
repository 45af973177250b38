#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
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

/// Type and bytes, as "1:text"; "none" when the value is not there.
std::string Value(const RegistryFile& file, const char* name) {
  const RegistryValue* value = file.Find(kOptions, name);
  return value == nullptr ? "none" : std::to_string(value->type) + ':' + value->bytes;
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
    "\"Unterminated\"=hex(1):61,62\r\n"sv;

TEST(RegistrationText, HoldsEveryKindOfValueAndIsReadBackAsItWasWritten) {
  std::string withoutReturns(kFile);
  std::erase(withoutReturns, '\r');
  for (const std::string& text :
       {std::string(kFile), withoutReturns, RegistryFile::Parse(kFile).Format()}) {
    SCOPED_TRACE(text);
    const RegistryFile file = RegistryFile::Parse(text);
    EXPECT_EQ(Value(file, ""), "1:unnamed\0"sv);
    EXPECT_EQ(Value(file, "DataRoot"), "1:C:\\data \"new\"\0"sv);
    EXPECT_EQ(Value(file, "Spaced"), "1:x=1\0"sv);
    EXPECT_EQ(Value(file, "Count"), "4:\x0A\x01\0\0"sv);
    EXPECT_EQ(Value(file, "Bytes"), "3:\x01\xFF\0"sv);
    EXPECT_EQ(Value(file, "Unterminated"), "1:ab");
  }
}

TEST(RegistrationText, MayHaveLinesThatMeanNothingAndEndAnywhere) {
  for (const char* line :
       {"rubbish", R"("x)", R"("x")", R"("x"=)", R"("x"="open)", R"("x"="a"b)", R"("x"=dword:xyz)",
        R"("x"=dword:123456789)", R"("x"=hex:1g)", R"("x"=hex:100)", R"("x"=hex():00)",
        R"("x"=hex(:00)", R"("x"=-)", "=", R"("\)", "[", "@", "\xFF\xFE"}) {
    SCOPED_TRACE(line);
    const RegistryFile file =
        RegistryFile::Parse(std::string("[") + kOptions + "]\n" + line + "\n\"after\"=\"ok\"\n");
    EXPECT_EQ(Value(file, "x"), "none");
    EXPECT_EQ(Value(file, "after"), "1:ok\0"sv);
  }
  EXPECT_EQ(RegistryFile::Parse("\"outside\"=\"of any key\"").Format(), "REGEDIT4\r\n");
  const std::size_t endOfSpaced = kFile.find("\"Count") - std::string_view(" \r\n").size();
  for (std::size_t length = 0; length <= kFile.size(); ++length) {
    const RegistryFile file = RegistryFile::Parse(kFile.substr(0, length));
    EXPECT_EQ(Value(file, "Spaced") != "none", length >= endOfSpaced) << length;
  }
}

class RegistrationFile : public testing::Test {
 protected:
  std::filesystem::path Path() const { return registry_.Folder() / "registry.reg"; }

  RegistryFile Read() const {
    std::ifstream stream(Path(), std::ios::binary);
    return RegistryFile::Parse(std::string{std::istreambuf_iterator<char>(stream), {}});
  }

  /// Creates the key and, when that succeeds, sets the value to "new".
  static LSTATUS Set(const char* name, DWORD* disposition = nullptr) {
    HKEY key = nullptr;
    LSTATUS status =
        RegCreateKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Options", 0, nullptr,
                        REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &key, disposition);
    if (status == ERROR_SUCCESS) {
      status = RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>("new"), 4);
      RegCloseKey(key);
    }
    return status;
  }

  PrivateRegistry registry_;
};

TEST_F(RegistrationFile, IsMadeByTheFirstKeyAndReadAnewWhenItHasChanged) {
  HKEY key = nullptr;
  DWORD disposition = 0;
  EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE", 0, KEY_READ, &key),
            LSTATUS{ERROR_FILE_NOT_FOUND});
  ASSERT_EQ(Set("value", &disposition), LSTATUS{ERROR_SUCCESS});
  EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
  EXPECT_EQ(Value(Read(), "value"), "1:new\0"sv);

  ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Options", 0, KEY_READ, &key),
            LSTATUS{ERROR_SUCCESS});
  std::ofstream(Path()) << "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Options]\n\"value\"=\"by hand\"\n";
  DWORD size = 0;
  EXPECT_EQ(RegQueryValueExA(key, "value", nullptr, nullptr, nullptr, &size),
            LSTATUS{ERROR_SUCCESS});
  EXPECT_EQ(size, sizeof "by hand");
  RegCloseKey(key);
}

TEST_F(RegistrationFile, KeepsWhatAChangeDoesNotConcern) {
  std::ofstream(Path(), std::ios::binary)
      << kFile << "[HKEY_CURRENT_USER\\Other]\r\n\"a\"=\"b\"\r\n";
  ASSERT_EQ(Set("dataroot"), LSTATUS{ERROR_SUCCESS});
  const RegistryFile file = Read();
  EXPECT_EQ(Value(file, "DataRoot"), "1:new\0"sv);
  EXPECT_EQ(Value(file, "Count"), "4:\x0A\x01\0\0"sv);
  EXPECT_NE(file.Find("HKEY_CURRENT_USER\\Other", "a"), nullptr);
  const std::filesystem::directory_iterator files(registry_.Folder());
  EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "a draft was left behind";
}

TEST_F(RegistrationFile, LiesWhereTheEnvironmentSaysAndThereAlone) {
  const std::string folder = registry_.Folder().string();
  std::ofstream(registry_.Folder() / "file") << "no folder";
  setenv("QLX99_REGISTRY", (folder + "/file/registry.reg").c_str(), 1);
  EXPECT_EQ(Set("value"), LSTATUS{ERROR_ACCESS_DENIED});
  unsetenv("QLX99_REGISTRY");
  setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
  EXPECT_EQ(Set("value"), LSTATUS{ERROR_SUCCESS});
  unsetenv("XDG_CONFIG_HOME");
  EXPECT_TRUE(std::filesystem::exists(registry_.Folder() / "qlx99" / "registry.reg"));
}

}  // namespace
