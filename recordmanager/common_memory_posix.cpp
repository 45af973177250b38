#include <sys/mman.h>

#include "recordmanager/common_memory.h"

namespace recordmanager {

void* AllocateCommon(std::size_t size) {
  void* const memory =
      mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  return memory == MAP_FAILED ? nullptr : memory;
}

void FreeCommon(void* memory, std::size_t size) { munmap(memory, size); }

}  // namespace recordmanager
