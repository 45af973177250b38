// Plays the inputs in a folder again. For builds without libFuzzer.
#include "fuzz/input.h"
#include "testkit/files.h"

int main(int /*argc*/, char** argv) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    const std::string bytes = testkit::ReadAll(entry.path());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++count;
  }
  std::printf("%d inputs\n", count);
  return count > 0 ? 0 : 1;
}
