// The registry of the measurements, in place of Windows' functions of these names: what a registry
// takes for its answers is not the library's time, and that of platform/ is only there for
// development. It knows one value.
#include <algorithm>
#include <cstring>
#include <string>

#include "bench/bench_office.h"
#include "frame/registry.h"
#include "platform/windows_api.h"

namespace bench {
namespace {

std::string dataRoot;

}  // namespace

void SetDataRoot(const std::string& path) { dataRoot = path; }

}  // namespace bench

LSTATUS WINAPI RegOpenKeyExA(HKEY key, LPCSTR /*subKey*/, DWORD /*options*/, REGSAM /*access*/,
                             HKEY* result) {
  *result = key;
  return ERROR_SUCCESS;
}

// NOLINTNEXTLINE(readability-non-const-parameter): they have Windows' types
LSTATUS WINAPI RegQueryValueExA(HKEY /*key*/, LPCSTR valueName, DWORD* /*reserved*/,
                                DWORD* /*type*/, BYTE* data, DWORD* size) {
  const DWORD needed = static_cast<DWORD>(bench::dataRoot.size()) + 1;
  if (std::strcmp(valueName, qlx99::kDataRoot.name) != 0 || *size < needed) {
    return static_cast<LSTATUS>(ERROR_FILE_NOT_FOUND);
  }
  std::copy_n(bench::dataRoot.c_str(), needed, data);
  *size = needed;
  return ERROR_SUCCESS;
}

LSTATUS WINAPI RegCloseKey(HKEY /*key*/) { return ERROR_SUCCESS; }
