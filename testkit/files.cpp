#include "testkit/files.h"

#include <random>

namespace testkit {
namespace {

namespace fs = std::filesystem;

// One for each process, which holds all its folders.
const fs::path& Root() {
  static const fs::path root =
      fs::temp_directory_path() / ("qlx99_testkit_" + std::to_string(std::random_device()()));
  return root;
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  static int count = 0;
  path_ = Root() / std::to_string(++count);
  fs::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code error;
  fs::remove_all(path_, error);
  fs::remove(Root(), error);  // unless there are others
}

void RemoveTemporaryFolders() {
  std::error_code error;
  fs::remove_all(Root(), error);
}

}  // namespace testkit
