#include "store/record_manager_library.h"

#include <algorithm>
#include <array>

#include "frame/attach.h"

namespace qlx99 {
namespace {

constexpr DWORD kRoom = 32768;  // for the longest path that Windows knows
using WidePath = std::array<WCHAR, kRoom>;

bool IsSeparator(WCHAR c) { return c == u'\\' || c == u'/'; }

// The folder of the module, with the separator at its end, and in it the file of that name.
WidePath PathBeside(HMODULE module, const char* name) {
  WidePath path{};
  const DWORD length = GetModuleFileNameW(module, path.data(), kRoom);
  auto* end = path.begin() + std::min(length, kRoom);
  while (end != path.begin() && !IsSeparator(*(end - 1))) --end;
  while (*name != '\0' && end != path.end() - 1) *end++ = static_cast<WCHAR>(*name++);
  *end = u'\0';
  return path;
}

bool GoToFolderOf(HMODULE module) {
  return SetCurrentDirectoryW(PathBeside(module, "").data()) != FALSE;
}

// While it exists, the folder of qlx99 is the current one. If that folder cannot be entered (its
// path is too long, its share is offline), the program's folder is, which is searched anyway.
// SetDllDirectory is no way to do this: nobody can ask for the host's setting, to put it back.
class TrustedFolderAsCurrent {
 public:
  TrustedFolderAsCurrent() {
    const DWORD length = GetCurrentDirectoryW(kRoom, hosts_.data());
    isCurrent_ = length > 0 && length < kRoom &&
                 (GoToFolderOf(CurrentAttachment().module) || GoToFolderOf(nullptr));
  }
  ~TrustedFolderAsCurrent() {
    if (isCurrent_) SetCurrentDirectoryW(hosts_.data());
  }
  TrustedFolderAsCurrent(const TrustedFolderAsCurrent&) = delete;
  TrustedFolderAsCurrent& operator=(const TrustedFolderAsCurrent&) = delete;

  bool IsCurrent() const { return isCurrent_; }

 private:
  WidePath hosts_{};
  bool isCurrent_ = false;
};

HMODULE LoadByName(const char* name) {
  const TrustedFolderAsCurrent trusted;
  return trusted.IsCurrent() ? LoadLibraryA(name) : nullptr;
}

}  // namespace

HMODULE LoadRecordManagerLibrary(const char* name) {
  HMODULE const library = LoadByName(name);
  if (library != nullptr) return library;
  // Some hosts have excluded the current folder from the search.
  return LoadLibraryExW(PathBeside(CurrentAttachment().module, name).data(), nullptr,
                        LOAD_WITH_ALTERED_SEARCH_PATH);
}

}  // namespace qlx99
