#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "platform/unsupported.h"
#include "platform/windows_api.h"

namespace {

thread_local DWORD lastError = ERROR_SUCCESS;
std::atomic<UINT> errorMode = 0;

}  // namespace

DWORD WINAPI GetLastError() { return lastError; }

void WINAPI SetLastError(DWORD error) { lastError = error; }

UINT WINAPI SetErrorMode(UINT mode) { return errorMode.exchange(mode); }

void platform::Unsupported(const char* function, const std::string& what) {
  std::fprintf(stderr, "%s: %s is not supported on this system\n", function, what.c_str());
  std::abort();
}
