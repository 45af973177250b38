#include "support/world.h"

#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "platform/resources.h"

namespace qlx99::tests::world {
namespace {

std::string farewell;

// Only what a signal handler may do.
void EndProcess(int /*signal*/) {
  [[maybe_unused]] const auto written = write(STDERR_FILENO, farewell.data(), farewell.size());
  _exit(EXIT_FAILURE);
}

}  // namespace

std::filesystem::path ProgramFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

std::string LibraryFile(const std::string& name) { return "lib" + name + ".so"; }

std::span<const std::byte> DialogTemplate(HMODULE library, WORD id) {
  constexpr WORD kDialog = 5;
  return platform::FindResourceOf(library, kDialog, id);
}

void SetDeadline(std::chrono::seconds time, const std::string& what) {
  alarm(0);
  farewell = what + " takes too long\n";
  std::signal(SIGALRM, EndProcess);
  alarm(static_cast<unsigned>(time.count()));
}

}  // namespace qlx99::tests::world
