// Windows' own registry functions on a key of the user, which for this process stands in the place
// of the machine's part of the registry.
#include "support/private_registry.h"

#include <gtest/gtest.h>

#include "platform/windows_api.h"

namespace qlx99::tests {
namespace {

std::string KeyOfThisProcess() {
  return "Software\\qlx99 tests " + std::to_string(GetCurrentProcessId());
}

}  // namespace

PrivateRegistry::PrivateRegistry() {
  RegDeleteTreeA(HKEY_CURRENT_USER, KeyOfThisProcess().c_str());  // of one that was killed
  HKEY key = nullptr;
  EXPECT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, KeyOfThisProcess().c_str(), 0, nullptr,
                            REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  EXPECT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, key), ERROR_SUCCESS);
  RegCloseKey(key);
}

PrivateRegistry::~PrivateRegistry() {
  RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  EXPECT_EQ(RegDeleteTreeA(HKEY_CURRENT_USER, KeyOfThisProcess().c_str()), ERROR_SUCCESS);
}

}  // namespace qlx99::tests
