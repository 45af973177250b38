#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>

#include "platform/windows_api.h"

// NOLINTNEXTLINE(bugprone-reserved-identifier): the C runtime's own name
int _access(const char* path, int mode) {
  constexpr int kReadAndWrite = 6;  // the two bits mean the same on both systems
  if (path == nullptr || (mode & ~kReadAndWrite) != 0) {
    errno = EINVAL;
    return -1;
  }
  std::string native = path;
  std::replace(native.begin(), native.end(), '\\', '/');
  return access(native.c_str(), mode);
}
