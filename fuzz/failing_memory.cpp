#include "fuzz/failing_memory.h"

#include <sqlite3.h>

#include <cstdlib>
#include <new>

namespace fuzz {
namespace {

int left = 0;
bool lasts = false;

bool IsSpent() {
  if (left == 0 || --left > 0) return false;
  left = lasts ? 1 : 0;
  return true;
}

sqlite3_mem_methods sqliteMemory;

}  // namespace

void LetMemoryFail(int nth, bool lasting) {
  left = nth;
  lasts = lasting;
}

void WatchMemory() {
  sqlite3_config(SQLITE_CONFIG_GETMALLOC, &sqliteMemory);
  sqlite3_mem_methods failing = sqliteMemory;
  failing.xMalloc = [](int size) { return IsSpent() ? nullptr : sqliteMemory.xMalloc(size); };
  failing.xRealloc = [](void* memory, int size) {
    return IsSpent() ? nullptr : sqliteMemory.xRealloc(memory, size);
  };
  sqlite3_config(SQLITE_CONFIG_MALLOC, &failing);
}

}  // namespace fuzz

void* operator new(std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept {
  return fuzz::IsSpent() ? nullptr : std::malloc(size);
}

void* operator new(std::size_t size) {
  void* const memory = operator new(size, std::nothrow);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
