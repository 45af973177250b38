#pragma once

#include <bit>

#include "platform/windows_api.h"

/// The test library, loaded for the life of the object.
class TestLibrary {
 public:
  static constexpr auto kName = "platform_test_library.dll";

  TestLibrary() : handle_(LoadLibraryA(kName)) {}
  ~TestLibrary() { FreeLibrary(handle_); }
  TestLibrary(const TestLibrary&) = delete;
  TestLibrary& operator=(const TestLibrary&) = delete;

  HMODULE Handle() const { return handle_; }

  template <class Function>
  auto* Find(const char* name) const {
    return std::bit_cast<Function*>(GetProcAddress(handle_, name));
  }

 private:
  HMODULE handle_;
};
