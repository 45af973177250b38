// A function of a loaded library, by its name.
#pragma once

#include <bit>
#include <stdexcept>
#include <string>

#include "platform/windows_api.h"

namespace testkit {

// Whatever the type it is taken for. Throws when the library has none of that name.
class FoundExport {
 public:
  FoundExport(HMODULE library, const char* name) : address_(GetProcAddress(library, name)) {
    if (address_ == nullptr) throw std::runtime_error(std::string(name) + " is not exported");
  }

  template <class Function>
  operator Function*() const {  // NOLINT(google-explicit-constructor)
    return std::bit_cast<Function*>(address_);
  }

 private:
  FARPROC address_;
};

}  // namespace testkit
