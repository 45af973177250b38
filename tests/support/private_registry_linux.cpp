#include <cstdlib>

#include "support/private_registry.h"

namespace qlx99::tests {

PrivateRegistry::PrivateRegistry() {
  setenv("QLX99_REGISTRY", (Folder() / "registry.reg").c_str(), 1);
}

PrivateRegistry::~PrivateRegistry() { unsetenv("QLX99_REGISTRY"); }

}  // namespace qlx99::tests
