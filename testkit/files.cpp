#include "testkit/files.h"

#include <random>

namespace testkit {
namespace {

namespace fs = std::filesystem;

// One for each process, which holds all its folders, and goes at its end.
struct Root {
  ~Root() {
    std::error_code error;
    fs::remove_all(path, error);
  }
  const fs::path path =
      fs::temp_directory_path() / ("qlx99_testkit_" + std::to_string(std::random_device()()));
};

}  // namespace

TemporaryFolder::TemporaryFolder() {
  static const Root root;
  static int count = 0;
  path_ = root.path / std::to_string(++count);
  fs::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code error;
  fs::remove_all(path_, error);
}

}  // namespace testkit
