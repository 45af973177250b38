#include "office/module.h"

#include <algorithm>

#include "office/host.h"
#include "store/record_manager_library.h"

namespace office {

HMODULE LoadModule(const std::string& library) {
  if (library.find_first_of("/\\") == std::string::npos) {
    return qlx99::LoadRecordManagerLibrary(library.c_str());
  }
  const std::u16string path = std::filesystem::absolute(PathOf(library)).u16string();
  const std::basic_string<WCHAR> wide(path.begin(), path.end());
  return LoadLibraryExW(wide.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

std::filesystem::path PathOfModule(HMODULE library) {
  constexpr DWORD kRoom = 32768;  // for the longest path that Windows knows
  std::basic_string<WCHAR> path(kRoom, WCHAR{});
  path.resize(std::min(GetModuleFileNameW(library, path.data(), kRoom), kRoom));
  return std::u16string(path.begin(), path.end());
}

}  // namespace office
