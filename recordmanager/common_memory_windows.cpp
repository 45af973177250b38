#include "recordmanager/common_memory.h"

namespace recordmanager {

// No process becomes a copy there.
void* AllocateCommon(std::size_t size) { return ::operator new(size, std::nothrow); }

void FreeCommon(void* memory, std::size_t /*size*/) { ::operator delete(memory); }

}  // namespace recordmanager
