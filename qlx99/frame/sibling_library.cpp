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
  // It stays the current one: the sibling may load further parts of itself from there, and later.
  SetCurrentDirectoryA(PathBelow(root, kSiblingFolder).data());
  // Without the system's own dialogs: who misses a function is told so by name.
  const UINT previousMode = SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  siblingLibrary = LoadLibraryA(PathBelow(root, kSiblingFile).data());
  SetErrorMode(previousMode);
}

FARPROC SiblingFunction(const char* name) {
  // Windows would take no library for the program itself.
  return siblingLibrary == nullptr ? nullptr : GetProcAddress(siblingLibrary, name);
}

void FreeSiblingLibrary() {
  if (siblingLibrary != nullptr) FreeLibrary(std::exchange(siblingLibrary, nullptr));
}

}  // namespace qlx99
