#include <cstdlib>
#include <string>

#include "private_registry.h"

PrivateRegistry::PrivateRegistry() {
  std::string pattern = (std::filesystem::temp_directory_path() / "qlx99_registry_XXXXXX").string();
  folder_ = mkdtemp(pattern.data());
  setenv("QLX99_REGISTRY", (folder_ / "registry.reg").c_str(), 1);
}

PrivateRegistry::~PrivateRegistry() {
  unsetenv("QLX99_REGISTRY");
  std::filesystem::remove_all(folder_);
}
