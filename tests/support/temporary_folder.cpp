#include "support/temporary_folder.h"

#include <random>

namespace qlx99::tests {
namespace {

namespace fs = std::filesystem;

// One for each process, which holds all its folders.
const fs::path& Root() {
  static const fs::path root =
      fs::temp_directory_path() / ("qlx99_tests_" + std::to_string(std::random_device()()));
  return root;
}

void Remove(const fs::path& folder) {
  std::error_code error;
  fs::remove_all(folder, error);
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  static int count = 0;
  path_ = Root() / std::to_string(++count);
  fs::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() { Remove(path_); }

void RemoveTemporaryFolders() { Remove(Root()); }

}  // namespace qlx99::tests
