// What the compiler's runtime wants of threads, in place of its library for them: that one keeps an
// index of thread-local storage and two handles each time that this library is loaded and freed,
// until there are none left, and ends the process when there is no memory for its locks. Here only
// the thread whose turn it is throws, and the runtime begins and ends under the loader's lock; so
// there is nothing to lock, and nothing to keep for each thread.
#include <cxxabi.h>

#include <array>
#include <ctime>

#include "platform/windows_api.h"

namespace __cxxabiv1 {
namespace {

alignas(void*) std::array<unsigned char, 16> exceptions;  // those that are being handled

}  // namespace

extern "C" __cxa_eh_globals* __cxa_get_globals() noexcept {
  return reinterpret_cast<__cxa_eh_globals*>(exceptions.data());
}

extern "C" __cxa_eh_globals* __cxa_get_globals_fast() noexcept { return __cxa_get_globals(); }

}  // namespace __cxxabiv1

extern "C" {

int pthread_mutex_init(void* /*mutex*/, const void* /*attributes*/) { return 0; }
int pthread_mutex_lock(void* /*mutex*/) { return 0; }
int pthread_mutex_unlock(void* /*mutex*/) { return 0; }
int pthread_mutex_destroy(void* /*mutex*/) { return 0; }

int pthread_once(long* done, void (*work)()) {
  if (*done == 0) work();
  *done = 1;
  return 0;
}

// The steady one, which is the only one that is asked for.
int clock_gettime(int /*clock*/, timespec* time) {
  constexpr long long kNanoseconds = 1'000'000'000;
  LARGE_INTEGER frequency;
  LARGE_INTEGER count;
  QueryPerformanceFrequency(&frequency);
  QueryPerformanceCounter(&count);
  time->tv_sec = static_cast<time_t>(count.QuadPart / frequency.QuadPart);
  time->tv_nsec =
      static_cast<long>(count.QuadPart % frequency.QuadPart * kNanoseconds / frequency.QuadPart);
  return 0;
}

}  // extern "C"
