// How does a library that Windows calls NAME.dll become libNAME.so? A module's handle is dlopen's.
#include "platform/libraries.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>

#include "platform/recoding.h"
#include "platform/unsupported.h"

namespace {

namespace fs = std::filesystem;

thread_local DWORD lastError = ERROR_SUCCESS;
std::atomic<UINT> errorMode = 0;

struct ExtraDirectory {
  std::mutex mutex;
  std::optional<std::string> path;  // stands in the place of the current directory
};

// Never destroyed: libraries may still load others while the process ends.
ExtraDirectory& Extra() {
  static auto& extra = *new ExtraDirectory;
  return extra;
}

// "dir\NAME.dll" as "dir/libNAME.so"; a name with another extension stays.
fs::path LibraryFile(std::string name) {
  std::replace(name.begin(), name.end(), '\\', '/');
  fs::path path = name;
  if (path.extension() != ".dll") return path;
  return path.parent_path() / ("lib" + path.stem().string() + ".so");
}

struct Search {
  fs::path file;
  fs::path found;
};

int CompareName(dl_phdr_info* info, std::size_t /*size*/, void* search) {
  auto& [file, found] = *static_cast<Search*>(search);
  const fs::path path = info->dlpi_name;
  if (path.filename() != file) return 0;
  found = path;
  return 1;
}

// The path of the mapped library with this file name; empty when there is none. Windows compares
// names alone, too.
fs::path PathOfLoaded(const fs::path& file) {
  Search search{file, {}};
  dl_iterate_phdr(CompareName, &search);
  return search.found;
}

// Empty when there is none to be searched.
fs::path SearchedDirectory() {
  const std::lock_guard lock(Extra().mutex);
  std::error_code error;
  return Extra().path ? fs::path(*Extra().path) : fs::current_path(error);
}

fs::path ProgramFile() {
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error);
}

// Always with a folder: which bare names dlopen finds depends on the library that calls it.
fs::path Locate(const fs::path& file) {
  if (file.has_parent_path()) return file;
  if (fs::path loaded = PathOfLoaded(file); !loaded.empty()) return loaded;
  fs::path besideProgram = ProgramFile().parent_path() / file;
  const fs::path searched = SearchedDirectory();
  std::error_code error;
  return searched.empty() || fs::exists(besideProgram, error) ? besideProgram : searched / file;
}

}  // namespace

HMODULE platform::ModuleAt(const void* address) {
  dl_find_object found{};
  const bool isKnown = _dl_find_object(const_cast<void*>(address), &found) == 0;
  return isKnown ? reinterpret_cast<HMODULE>(found.dlfo_link_map) : nullptr;
}

DWORD WINAPI GetLastError() { return lastError; }

UINT WINAPI SetErrorMode(UINT mode) { return errorMode.exchange(mode); }

HMODULE WINAPI LoadLibraryA(LPCSTR fileName) {
  const fs::path path = Locate(LibraryFile(fileName));
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  std::error_code error;
  if (library == nullptr) {
    lastError = fs::exists(path, error) ? ERROR_BAD_EXE_FORMAT : ERROR_MOD_NOT_FOUND;
  }
  return static_cast<HMODULE>(library);
}

HMODULE WINAPI LoadLibraryExW(LPCWSTR fileName, HANDLE /*reserved*/, DWORD flags) {
  const std::string path = platform::Utf8(fileName);
  if (flags != LOAD_WITH_ALTERED_SEARCH_PATH || path.find_first_of("/\\") == std::string::npos) {
    platform::Unsupported("LoadLibraryExW", "anything but a library's whole path");
  }
  return LoadLibraryA(path.c_str());
}

DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD size) {
  const fs::path file = module == nullptr ? "" : reinterpret_cast<link_map*>(module)->l_name;
  std::error_code error;
  return platform::CopyPath(file.empty() ? ProgramFile() : fs::absolute(file, error), path, size);
}

BOOL WINAPI FreeLibrary(HMODULE module) { return dlclose(module) == 0 ? TRUE : FALSE; }

FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name) {
  return reinterpret_cast<FARPROC>(dlsym(module, name));
}

HMODULE WINAPI GetModuleHandleA(LPCSTR fileName) {
  const fs::path path = fileName == nullptr ? fs::path() : PathOfLoaded(LibraryFile(fileName));
  if (fileName != nullptr && path.empty()) return nullptr;
  void* module = dlopen(fileName == nullptr ? nullptr : path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (module != nullptr) dlclose(module);
  return static_cast<HMODULE>(module);
}

BOOL WINAPI SetDllDirectoryA(LPCSTR directory) {
  const std::lock_guard lock(Extra().mutex);
  Extra().path = directory == nullptr ? std::nullopt : std::optional<std::string>(directory);
  return TRUE;
}
