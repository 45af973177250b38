// Paths: whether there is one, and which folder is the current one.
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "platform/recoding.h"
#include "platform/windows_api.h"

namespace {

std::string NativePath(const char* path) {
  std::string native = path;
  std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

}  // namespace

// NOLINTNEXTLINE(bugprone-reserved-identifier): the C runtime's own name
int _access(const char* path, int mode) { return access(NativePath(path).c_str(), mode); }

BOOL WINAPI SetCurrentDirectoryA(LPCSTR path) {
  return chdir(NativePath(path).c_str()) == 0 ? TRUE : FALSE;
}

BOOL WINAPI SetCurrentDirectoryW(LPCWSTR path) {
  return SetCurrentDirectoryA(platform::Utf8(path).c_str());
}

DWORD WINAPI GetCurrentDirectoryW(DWORD size, LPWSTR path) {
  std::error_code error;
  return platform::CopyPath(std::filesystem::current_path(error).string(), path, size);
}
