#include "frame/sibling_library.h"

#include <cstdio>
#include <utility>

namespace qlx99 {
namespace {

HMODULE siblingLibrary = nullptr;

}  // namespace

MappingPath PathBelow(const MappingRoot& root, const char* pattern) {
  MappingPath path{};
  std::snprintf(path.data(), path.size(), pattern, root.data());
  return path;
}

void LoadSiblingLibrary(const MappingRoot& root) {
  if (siblingLibrary != nullptr) return;
  // It stays the current folder: the sibling may later load more of its parts from there.
  SetCurrentDirectoryA(PathBelow(root, kSiblingFolder).data());
  // Without the system's dialogs: a call that then finds no function names it in a message.
  const UINT previousMode = SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  siblingLibrary = LoadLibraryA(PathBelow(root, kSiblingFile).data());
  SetErrorMode(previousMode);
}

FARPROC SiblingFunction(const char* name) {
  // For a null library, Windows would look in the program.
  return siblingLibrary == nullptr ? nullptr : GetProcAddress(siblingLibrary, name);
}

void FreeSiblingLibrary() {
  if (siblingLibrary != nullptr) FreeLibrary(std::exchange(siblingLibrary, nullptr));
}

}  // namespace qlx99
