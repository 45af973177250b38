#include <gmock/gmock.h>

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "platform/windows_api.h"
#include "support/private_registry.h"

namespace {

using qlx99::tests::PrivateRegistry;

using namespace std::string_view_literals;

class Registry : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(
        RegCreateKeyExA(HKEY_LOCAL_MACHINE, PrivateRegistry::kKey, 0, nullptr,
                        REG_OPTION_NON_VOLATILE, KEY_READ | KEY_WRITE, nullptr, &key_, nullptr),
        LSTATUS{ERROR_SUCCESS});
    RegDeleteValueA(key_, kName);
  }
  void TearDown() override {
    RegDeleteValueA(key_, kName);
    EXPECT_EQ(RegCloseKey(key_), LSTATUS{ERROR_SUCCESS});
  }

  LSTATUS Set(std::string_view bytes, DWORD type = REG_SZ) {
    // Windows looks at the byte behind an unterminated text and stores a terminator that it finds
    // there.
    const std::string guarded = std::string(bytes) + '#';
    return RegSetValueExA(key_, kName, 0, type, reinterpret_cast<const BYTE*>(guarded.data()),
                          static_cast<DWORD>(bytes.size()));
  }

  /// The bytes of a value as they come back; nothing when the query fails.
  std::optional<std::string> Get(const char* name = kName) {
    std::array<char, 200> buffer{};
    auto size = static_cast<DWORD>(buffer.size());
    if (RegQueryValueExA(key_, name, nullptr, nullptr, reinterpret_cast<BYTE*>(buffer.data()),
                         &size) != ERROR_SUCCESS) {
      return std::nullopt;
    }
    return std::string(buffer.data(), size);
  }

  static constexpr auto kName = "Value";
  HKEY key_ = nullptr;

 private:
  PrivateRegistry registry_;
};

TEST_F(Registry, GivesBackExactlyTheBytesThatWereStored) {
  const std::array texts{"C:\\data \"old\"\0"sv, "\0"sv, "two\r\nlines\0"sv, "M\xFCller [x]=1;\0"sv,
                         "unterminated"sv};
  for (const std::string_view text : texts) {
    SCOPED_TRACE(text);
    ASSERT_EQ(Set(text), LSTATUS{ERROR_SUCCESS});
    EXPECT_EQ(Get(), text);
  }
}

TEST_F(Registry, KeepsTheTypeOfAValue) {
  for (const DWORD type : {REG_SZ, REG_BINARY, REG_DWORD}) {
    ASSERT_EQ(Set("\x01\x02\x00\xFF"sv, type), LSTATUS{ERROR_SUCCESS});
    DWORD storedType = 0;
    EXPECT_EQ(RegQueryValueExA(key_, kName, nullptr, &storedType, nullptr, nullptr),
              LSTATUS{ERROR_SUCCESS});
    EXPECT_EQ(storedType, type);
    EXPECT_EQ(Get(), "\x01\x02\x00\xFF"sv);
  }
}

TEST_F(Registry, WritesOnlyIntoBuffersThatHoldTheWholeValue) {
  Set("C:\\data\0"sv);
  struct Case {
    DWORD room;
    LSTATUS status;
  };
  for (const auto& [room, status] : {Case{0, ERROR_MORE_DATA}, Case{7, ERROR_MORE_DATA},
                                     Case{8, ERROR_SUCCESS}, Case{12, ERROR_SUCCESS}}) {
    SCOPED_TRACE(room);
    std::string buffer(12, '#');
    DWORD size = room;
    EXPECT_EQ(RegQueryValueExA(key_, kName, nullptr, nullptr,
                               reinterpret_cast<BYTE*>(buffer.data()), &size),
              status);
    EXPECT_EQ(size, 8U);
    EXPECT_EQ(buffer.substr(0, 8), status == ERROR_SUCCESS ? "C:\\data\0"sv : "########"sv);
  }
}

TEST_F(Registry, TellsTheSizeWithoutABuffer) {
  Set("C:\\data\0"sv);
  DWORD size = 1;
  EXPECT_EQ(RegQueryValueExA(key_, kName, nullptr, nullptr, nullptr, &size),
            LSTATUS{ERROR_SUCCESS});
  EXPECT_EQ(size, 8U);
  BYTE buffer = 0;
  EXPECT_EQ(RegQueryValueExA(key_, kName, nullptr, nullptr, &buffer, nullptr),
            LSTATUS{ERROR_INVALID_PARAMETER});
}

TEST_F(Registry, FindsNamesWhateverTheirCase) {
  Set("x\0"sv);
  EXPECT_EQ(Get("vALUE"), "x\0"sv);
  HKEY other = nullptr;
  ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "software\\QLX99 Tests", 0, KEY_READ, &other),
            LSTATUS{ERROR_SUCCESS});
  EXPECT_EQ(RegQueryValueExA(other, kName, nullptr, nullptr, nullptr, nullptr),
            LSTATUS{ERROR_SUCCESS});
  RegCloseKey(other);
}

TEST_F(Registry, FindsAKeyThroughItsParent) {
  HKEY software = nullptr;
  HKEY key = nullptr;
  ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE", 0, KEY_READ, &software),
            LSTATUS{ERROR_SUCCESS});
  EXPECT_EQ(RegOpenKeyExA(software, "qlx99 tests", 0, KEY_READ, &key), LSTATUS{ERROR_SUCCESS});
  RegCloseKey(key);
  RegCloseKey(software);
}

TEST_F(Registry, HasAValueWithoutAName) {
  for (const char* name : {static_cast<const char*>(nullptr), ""}) {
    ASSERT_EQ(RegSetValueExA(key_, name, 0, REG_SZ, reinterpret_cast<const BYTE*>("d"), 2),
              LSTATUS{ERROR_SUCCESS});
    EXPECT_EQ(Get(""), "d\0"sv);
    EXPECT_EQ(Get(nullptr), "d\0"sv);
    EXPECT_EQ(RegDeleteValueA(key_, name), LSTATUS{ERROR_SUCCESS});
  }
}

TEST_F(Registry, SaysWhatIsNotThere) {
  DWORD size = 0;
  EXPECT_EQ(RegQueryValueExA(key_, kName, nullptr, nullptr, nullptr, &size),
            LSTATUS{ERROR_FILE_NOT_FOUND});
  EXPECT_EQ(RegDeleteValueA(key_, kName), LSTATUS{ERROR_FILE_NOT_FOUND});
  HKEY key = nullptr;
  for (const char* path :
       {"SOFTWARE\\qlx99 test", "SOFTWARE\\qlx99 tests\\none", "SOFTWARE\\qlx99 tests 2"}) {
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key),
              LSTATUS{ERROR_FILE_NOT_FOUND})
        << path;
  }
}

TEST_F(Registry, ForgetsADeletedValue) {
  Set("x\0"sv);
  EXPECT_EQ(RegDeleteValueA(key_, "VALUE"), LSTATUS{ERROR_SUCCESS});
  EXPECT_EQ(Get(), std::nullopt);
}

TEST_F(Registry, SeesWhatWasWrittenThroughAnotherKeyHandle) {
  DWORD disposition = 0;
  HKEY other = nullptr;
  ASSERT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, PrivateRegistry::kKey, 0, nullptr,
                            REG_OPTION_NON_VOLATILE, KEY_READ, nullptr, &other, &disposition),
            LSTATUS{ERROR_SUCCESS});
  EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);
  Set("x\0"sv);
  EXPECT_EQ(RegQueryValueExA(other, kName, nullptr, nullptr, nullptr, nullptr),
            LSTATUS{ERROR_SUCCESS});
  RegCloseKey(other);
}

TEST_F(Registry, RefusesWhatTheKeyWasNotOpenedFor) {
  HKEY reader = nullptr;
  HKEY writer = nullptr;
  RegOpenKeyExA(HKEY_LOCAL_MACHINE, PrivateRegistry::kKey, 0, KEY_READ, &reader);
  RegOpenKeyExA(HKEY_LOCAL_MACHINE, PrivateRegistry::kKey, 0, KEY_WRITE, &writer);
  EXPECT_EQ(RegSetValueExA(reader, kName, 0, REG_SZ, nullptr, 0), LSTATUS{ERROR_ACCESS_DENIED});
  EXPECT_EQ(RegDeleteValueA(reader, kName), LSTATUS{ERROR_ACCESS_DENIED});
  EXPECT_EQ(RegQueryValueExA(writer, kName, nullptr, nullptr, nullptr, nullptr),
            LSTATUS{ERROR_ACCESS_DENIED});
  RegCloseKey(reader);
  RegCloseKey(writer);
}

TEST_F(Registry, RefusesAClosedKey) {
  HKEY key = nullptr;
  ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, PrivateRegistry::kKey, 0, KEY_READ | KEY_WRITE, &key),
            LSTATUS{ERROR_SUCCESS});
  EXPECT_EQ(RegCloseKey(key), LSTATUS{ERROR_SUCCESS});
  EXPECT_EQ(RegCloseKey(key), LSTATUS{ERROR_INVALID_HANDLE});
  EXPECT_EQ(RegQueryValueExA(key, kName, nullptr, nullptr, nullptr, nullptr),
            LSTATUS{ERROR_INVALID_HANDLE});
  EXPECT_EQ(RegSetValueExA(key, kName, 0, REG_SZ, nullptr, 0), LSTATUS{ERROR_INVALID_HANDLE});
  EXPECT_EQ(RegDeleteValueA(key, kName), LSTATUS{ERROR_INVALID_HANDLE});
  HKEY below = nullptr;
  EXPECT_EQ(RegOpenKeyExA(key, "x", 0, KEY_READ, &below), LSTATUS{ERROR_INVALID_HANDLE});
}

}  // namespace
