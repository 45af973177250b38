#include "store/record_manager_library.h"

#include <algorithm>
#include <array>

#include "frame/attach.h"

namespace qlx99 {
namespace {

constexpr DWORD kRoom = 32768;  // for the longest path that Windows knows
using WidePath = std::array<WCHAR, kRoom>;

bool IsSeparator(WCHAR c) { return c == u'\\' || c == u'/'; }

// The folder of qlx99, with the separator at its end, and in it the file of that name.
WidePath PathInOwnFolder(const char* name) {
  WidePath path{};
  const DWORD length = GetModuleFileNameW(CurrentAttachment().module, path.data(), kRoom);
  auto* end = path.begin() + std::min(length, kRoom);
  while (end != path.begin() && !IsSeparator(*(end - 1))) --end;
  while (*name != '\0' && end != path.end() - 1) *end++ = static_cast<WCHAR>(*name++);
  *end = u'\0';
  return path;
}

// While it exists, the folder of qlx99 stands in the place of the current one. SetDllDirectory
// would do that for libraries alone; but it could not be taken back, because nobody can ask whether
// the host had set nothing, or an empty text so that its current folder is never searched.
class OwnFolderAsCurrent {
 public:
  OwnFolderAsCurrent() {
    const DWORD length = GetCurrentDirectoryW(kRoom, hosts_.data());
    isCurrent_ =
        length > 0 && length < kRoom && SetCurrentDirectoryW(PathInOwnFolder("").data()) != FALSE;
  }
  ~OwnFolderAsCurrent() {
    if (isCurrent_) SetCurrentDirectoryW(hosts_.data());
  }
  OwnFolderAsCurrent(const OwnFolderAsCurrent&) = delete;
  OwnFolderAsCurrent& operator=(const OwnFolderAsCurrent&) = delete;

  bool IsCurrent() const { return isCurrent_; }

 private:
  WidePath hosts_{};
  bool isCurrent_ = false;
};

HMODULE LoadByName(const char* name) {
  const OwnFolderAsCurrent ownFolder;
  return ownFolder.IsCurrent() ? LoadLibraryA(name) : nullptr;
}

}  // namespace

HMODULE LoadRecordManagerLibrary(const char* name) {
  HMODULE const library = LoadByName(name);
  if (library != nullptr) return library;
  // Some hosts have taken the current folder out of the search, or all but a few.
  return LoadLibraryExW(PathInOwnFolder(name).data(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

}  // namespace qlx99
