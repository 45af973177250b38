// Plays inputs again: files, or folders of files. For builds without libFuzzer.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/input.h"

namespace {

namespace fs = std::filesystem;

int Play(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  return 1;
}

int PlayAll(const fs::path& path) {
  if (!fs::is_directory(path)) return Play(path);
  int count = 0;
  for (const auto& entry : fs::recursive_directory_iterator(path)) {
    if (entry.is_regular_file()) count += Play(entry.path());
  }
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (int i = 1; i < argc; ++i) count += PlayAll(argv[i]);
  std::printf("%d inputs\n", count);
  return count > 0 ? 0 : 1;
}
