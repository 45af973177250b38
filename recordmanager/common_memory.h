// Memory that a process has in common with those that are copies of it; one implementation a host.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>

namespace recordmanager {

// Null when there is none.
void* AllocateCommon(std::size_t size);
void FreeCommon(void* memory, std::size_t size);

template <typename T>
struct CommonDeleter {
  static_assert(std::is_trivially_destructible_v<T>);
  void operator()(T* object) const { FreeCommon(object, sizeof(T)); }
};

// What one process writes there the others see. Each lets go of it by itself.
template <typename T>
using Common = std::unique_ptr<T, CommonDeleter<T>>;

// Throws std::bad_alloc.
template <typename T>
Common<T> MakeCommon() {
  void* const memory = AllocateCommon(sizeof(T));
  if (memory == nullptr) throw std::bad_alloc();
  return Common<T>(new (memory) T);
}

}  // namespace recordmanager
