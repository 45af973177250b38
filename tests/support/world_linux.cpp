#include "support/world.h"

#include <sys/mman.h>
#include <unistd.h>

#include "platform/resources.h"

namespace qlx99::tests::world {

std::span<const std::byte> DialogTemplate(HMODULE library, WORD id) {
  constexpr WORD kDialog = 5;
  return platform::FindResourceOf(library, kDialog, id);
}

const char* AtPageEnd(std::string_view text) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const std::size_t size = (text.size() / page + 1) * page;
  void* const memory =
      mmap(nullptr, size + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  char* const end = static_cast<char*>(memory) + size;
  mprotect(end, page, PROT_NONE);
  text.copy(end - text.size(), text.size());
  return end - text.size();
}

}  // namespace qlx99::tests::world
