#include "bench/bench_office.h"

#include <algorithm>
#include <cstring>

#include "frame/bytes.h"
#include "office/host.h"
#include "platform/windows_api.h"

namespace bench {
namespace {

Offices offices;
std::string dataRoot;  // which is all that the registry knows

}  // namespace

const Offices& TheOffices() { return offices; }

void SetOffices(const std::filesystem::path& folder) {
  // Without the links of scripts/bench, which each look at a file would have to follow.
  const auto office = [&](const char* name) { return std::filesystem::canonical(folder / name); };
  offices = {folder / "work", office("small"), office("usual"), office("large")};
  std::filesystem::remove_all(offices.work);
  std::filesystem::create_directories(offices.work);
}

void UseOffice(const std::filesystem::path& office) { dataRoot = office::NativeText(office); }

qlx99::DataRoot DataRootOf(const std::filesystem::path& office) {
  qlx99::DataRoot root{};
  const std::string text = office::NativeText(office);
  qlx99::CopyBytes(text, root.data(), root.size() - 1);
  return root;
}

}  // namespace bench

// The registry of the measurements, in place of Windows' functions of these names: what a registry
// takes for its answers is not the library's time, and that of platform/ is only there for
// development.
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
