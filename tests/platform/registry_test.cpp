#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <string_view>

#include "platform/windows_api.h"
#include "testkit/private_registry.h"

namespace {

using testkit::PrivateRegistry;

using namespace std::string_view_literals;

constexpr auto kName = "Value";

class Registry : public testing::Test {
 protected:
  Registry() { EXPECT_EQ(Create(&key_), LSTATUS{ERROR_SUCCESS}); }
  ~Registry() override { EXPECT_EQ(RegCloseKey(key_), LSTATUS{ERROR_SUCCESS}); }

  static LSTATUS Create(HKEY* key) {
    return RegCreateKeyExA(HKEY_LOCAL_MACHINE, PrivateRegistry::kKey, 0, nullptr,
                           REG_OPTION_NON_VOLATILE, KEY_READ | KEY_WRITE, nullptr, key, nullptr);
  }

  static LSTATUS Open(HKEY parent, const char* path, HKEY* key) {
    return RegOpenKeyExA(parent, path, 0, KEY_READ, key);
  }

  static LSTATUS Set(HKEY key, const char* name, std::string_view bytes, DWORD type = REG_SZ) {
    // Windows looks at the byte behind an unterminated text and stores a terminator that it finds
    // there.
    const std::string guarded = std::string(bytes) + '#';
    return RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE*>(guarded.data()),
                          static_cast<DWORD>(bytes.size()));
  }

  // Whether there is such a value.
  static LSTATUS Query(HKEY key, const char* name) {
    return RegQueryValueExA(key, name, nullptr, nullptr, nullptr, nullptr);
  }

  // The status, the bytes of a buffer with that room at first, and the size that came back.
  std::string Get(const char* name, DWORD room, DWORD* type = nullptr) {
    std::string buffer(room, '#');
    DWORD size = room;
    const LSTATUS status =
        RegQueryValueExA(key_, name, nullptr, type, reinterpret_cast<BYTE*>(buffer.data()), &size);
    return std::to_string(status) + ' ' + buffer + ' ' + std::to_string(size);
  }

  const PrivateRegistry registry_;
  HKEY key_ = nullptr;
};

TEST_F(Registry, GivesBackExactlyTheBytesAndTheTypeThatWereStored) {
  const std::pair<DWORD, std::string_view> values[] = {
      {REG_SZ, "C:\\data \"old\"\0"sv}, {REG_SZ, "\0"sv},           {REG_SZ, "two\r\nlines\0"sv},
      {REG_SZ, "M\xFCller [x]=1;\0"sv}, {REG_SZ, "unterminated"sv}, {REG_BINARY, "\1\2\0\xFF"sv},
      {REG_DWORD, "\1\2\0\xFF"sv}};
  for (const auto& [type, bytes] : values) {
    SCOPED_TRACE(bytes);
    // Without a name there is one value, too.
    for (const char* name : {kName, "", static_cast<const char*>(nullptr)}) {
      ASSERT_EQ(Set(key_, name, bytes, type), LSTATUS{ERROR_SUCCESS});
      DWORD stored = 0;
      const auto size = static_cast<DWORD>(bytes.size());
      EXPECT_EQ(Get(name, size, &stored), "0 " + std::string(bytes) + ' ' + std::to_string(size));
      EXPECT_EQ(stored, type);
    }
    EXPECT_EQ(RegDeleteValueA(key_, ""), LSTATUS{ERROR_SUCCESS});
    EXPECT_EQ(Query(key_, nullptr), LSTATUS{ERROR_FILE_NOT_FOUND});
  }
}

TEST_F(Registry, WritesOnlyIntoBuffersThatHoldTheWholeValue) {
  Set(key_, kName, "C:\\data\0"sv);
  EXPECT_EQ(Get(kName, 0), "234  8");
  EXPECT_EQ(Get(kName, 7), "234 ####### 8");
  EXPECT_EQ(Get("vALUE", 10), "0 C:\\data\0## 8"sv);
  DWORD size = 1;
  EXPECT_EQ(RegQueryValueExA(key_, kName, nullptr, nullptr, nullptr, &size),
            LSTATUS{ERROR_SUCCESS});
  EXPECT_EQ(size, 8U);
}

TEST_F(Registry, FindsKeysAndValuesWhateverTheirCase) {
  HKEY software = nullptr;
  HKEY again = nullptr;
  HKEY none = nullptr;
  const std::pair<LSTATUS, std::function<LSTATUS()>> steps[] = {
      {ERROR_SUCCESS, [&] { return Set(key_, kName, "x"); }},
      {ERROR_SUCCESS, [&] { return Open(HKEY_LOCAL_MACHINE, "SOFTWARE", &software); }},
      {ERROR_SUCCESS, [&] { return Open(software, "QLX99 Tests", &again); }},
      {ERROR_SUCCESS, [&] { return Query(again, "VALUE"); }},
      {ERROR_SUCCESS, [&] { return RegDeleteValueA(key_, "VALUE"); }},
      {ERROR_FILE_NOT_FOUND, [&] { return RegDeleteValueA(key_, kName); }},
      {ERROR_FILE_NOT_FOUND, [&] { return Query(again, kName); }},
      {ERROR_FILE_NOT_FOUND, [&] { return Open(software, "qlx99 test", &none); }},
      {ERROR_FILE_NOT_FOUND, [&] { return Open(software, "qlx99 tests 2", &none); }},
      {ERROR_FILE_NOT_FOUND, [&] { return Open(software, "qlx99 tests\\none", &none); }},
  };
  int number = 0;
  for (const auto& [status, take] : steps) EXPECT_EQ(take(), status) << "step " << ++number;
  for (HKEY key : {software, again}) EXPECT_EQ(RegCloseKey(key), LSTATUS{ERROR_SUCCESS});
}

}  // namespace
