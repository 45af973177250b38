#pragma once

#include <bit>

#include "platform/windows_api.h"

// What the test library heard from the loader.
struct Attachment {
  HINSTANCE module = nullptr;
  int count = 0;
  bool objectsWereReady = false;
  void (*atDetachment)() = nullptr;
};

// The test library, loaded for the life of the object.
class TestLibrary {
 public:
  static constexpr auto kName = "platform_test_library.dll";

  TestLibrary() : handle_(LoadLibraryA(kName)) {}
  ~TestLibrary() { FreeLibrary(handle_); }
  TestLibrary(const TestLibrary&) = delete;
  TestLibrary& operator=(const TestLibrary&) = delete;

  HMODULE Handle() const { return handle_; }
  Attachment& Heard() const {
    return *std::bit_cast<Attachment* (*)()>(GetProcAddress(handle_, "Heard"))();
  }

 private:
  HMODULE handle_;
};
