#include "support/library.h"

#include <gtest/gtest.h>

#include <bit>
#include <utility>

#include "support/record_managers.h"
#include "support/world.h"

namespace qlx99::tests {
namespace {

template <class Function>
void Resolve(HMODULE module, const char* name, Function*& function) {
  function = std::bit_cast<Function*>(GetProcAddress(module, name));
  if (function == nullptr) throw std::runtime_error(std::string(name) + " is not exported");
}

}  // namespace

const Exports* Library::operator->() {
  if (module_ == nullptr) {
    module_ = LoadLibraryA((ProductFolder() / world::LibraryFile("qlx99")).string().c_str());
    if (module_ == nullptr) throw std::runtime_error("qlx99 cannot be loaded");
#define QLX99_RESOLVE(name) Resolve(module_, #name, exports_.name);
    QLX99_EXPORTS(QLX99_RESOLVE)
#undef QLX99_RESOLVE
  }
  return &exports_;
}

void Library::Free() {
  if (module_ == nullptr) return;
  FreeLibrary(std::exchange(module_, nullptr));
  EXPECT_EQ(GetModuleHandleA("qlx99.dll"), nullptr) << "qlx99 stays loaded";
}

}  // namespace qlx99::tests
