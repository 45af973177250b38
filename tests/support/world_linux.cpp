#include "support/world.h"

#include <cstdlib>

namespace qlx99::tests::world {

std::filesystem::path ProgramFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

std::string LibraryFile(const std::string& name) { return "lib" + name + ".so"; }

void UsePrivateRegistry(const std::filesystem::path& folder) {
  const std::filesystem::path file = folder / "registry.reg";
  std::filesystem::remove(file);
  setenv("QLX99_REGISTRY", file.c_str(), 1);
}

std::filesystem::path MakeFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "qlx99_tests_XXXXXX").string();
  return mkdtemp(pattern.data());
}

}  // namespace qlx99::tests::world
