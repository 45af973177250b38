#include "support/library.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "support/record_managers.h"
#include "support/world.h"

namespace qlx99::tests {

const Exports* Library::operator->() {
  if (!exports_) {
    const std::string path = (LibraryFolder() / world::LibraryFile("qlx99")).string();
    HMODULE module = LoadLibraryA(path.c_str());
    if (module == nullptr) throw std::runtime_error(path + " cannot be loaded");
    exports_.emplace(module);
  }
  return &*exports_;
}

void Library::Free() {
  if (!exports_) return;
  FreeLibrary(exports_->module);
  exports_.reset();
  EXPECT_EQ(GetModuleHandleA("qlx99.dll"), nullptr) << "qlx99 stays loaded";
}

}  // namespace qlx99::tests
