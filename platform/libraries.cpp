// How does a library that Windows calls NAME.dll become libNAME.so? A module's handle is, as on
// Windows, the address at which it was mapped.
#include "platform/libraries.h"

#include <dlfcn.h>
#include <link.h>
#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/recoding.h"
#include "platform/unsupported.h"

namespace {

struct Module {
  HMODULE handle;
  std::string path;  // empty for the program itself
};

struct Library {
  void* handle;  // dlopen's
  int useCount;
  std::map<std::string, FARPROC, std::less<>> found;  // the functions that were asked for
};

struct LoadedLibraries {
  std::mutex mutex;
  std::map<HMODULE, Library> byModule;
  std::optional<std::string> extraDirectory;  // that stands in the place of the current one
};

// Never destroyed: libraries may still free others while the process ends.
LoadedLibraries& Loaded() {
  static auto& loaded = *new LoadedLibraries;
  return loaded;
}

template <class Result>
Result Fail(DWORD error, Result result) {
  SetLastError(error);
  return result;
}

std::string BaseName(const std::string& path) { return path.substr(path.rfind('/') + 1); }

bool EndsWithIgnoringCase(const std::string& text, const std::string& end) {
  return text.size() >= end.size() &&
         strcasecmp(text.c_str() + (text.size() - end.size()), end.c_str()) == 0;
}

// "dir\NAME.dll" or "dir\NAME" as "dir/libNAME.so"; a name with another extension stays.
std::string LibraryFile(std::string name) {
  std::replace(name.begin(), name.end(), '\\', '/');
  std::string base = BaseName(name);
  const std::string directory = name.substr(0, name.size() - base.size());
  if (base.find('.') == std::string::npos) base += ".dll";
  const std::string extension = ".dll";
  if (!EndsWithIgnoringCase(base, extension)) return name;
  base.resize(base.size() - extension.size());
  return directory + "lib" + base + ".so";
}

int AddModule(dl_phdr_info* info, std::size_t /*size*/, void* modules) {
  const ElfW(Phdr)* headers = info->dlpi_phdr;
  const ElfW(Phdr)* end = headers + info->dlpi_phnum;
  const ElfW(Phdr)* first =
      std::find_if(headers, end, [](const auto& h) { return h.p_type == PT_LOAD; });
  if (first != end) {
    auto* base = reinterpret_cast<HMODULE>(info->dlpi_addr + first->p_vaddr);
    static_cast<std::vector<Module>*>(modules)->push_back({base, info->dlpi_name});
  }
  return 0;
}

// Everything that is mapped now, the program first.
std::vector<Module> Modules() {
  std::vector<Module> modules;
  dl_iterate_phdr(AddModule, &modules);
  return modules;
}

// The path of the mapped library with this file name; empty when there is none. Windows compares
// names alone, too.
std::string PathOfLoaded(const std::string& file) {
  for (const Module& module : Modules()) {
    if (strcasecmp(BaseName(module.path).c_str(), file.c_str()) == 0) return module.path;
  }
  return {};
}

HMODULE ModuleOf(void* handle) {
  link_map* map = nullptr;
  if (dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0) return nullptr;
  return map->l_prev == nullptr ? GetModuleHandleA(nullptr) : platform::ModuleAt(map->l_ld);
}

// Empty when there is none to be searched.
std::string ExtraDirectory() {
  const std::lock_guard lock(Loaded().mutex);
  std::error_code error;
  return Loaded().extraDirectory.value_or(std::filesystem::current_path(error).string());
}

std::string ProgramDirectory() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}

// The path to hand to dlopen: always one with a folder, because dlopen's own search for a bare
// name depends on which library calls it. A name that lies nowhere is looked for beside the
// program.
std::string Locate(const std::string& file) {
  if (file.find('/') != std::string::npos) return file;
  if (std::string path = PathOfLoaded(file); !path.empty()) return path;
  for (const std::string& directory : {ProgramDirectory(), ExtraDirectory()}) {
    std::string path = std::filesystem::path(directory) / file;
    if (!directory.empty() && access(path.c_str(), F_OK) == 0) return path;
  }
  return std::filesystem::path(ProgramDirectory()) / file;
}

auto FindModule(const std::vector<Module>& modules, HMODULE module) {
  return std::find_if(modules.begin(), modules.end(),
                      [module](const Module& known) { return known.handle == module; });
}

bool IsModule(HMODULE module) {
  const std::vector<Module> modules = Modules();
  return FindModule(modules, module) != modules.end();
}

// dlopen's handle of a mapped module, to be closed by the caller; null when it is not (or no
// longer) mapped.
void* Reopen(HMODULE module) {
  const std::vector<Module> modules = Modules();
  const auto known = FindModule(modules, module);
  if (known == modules.end()) return nullptr;
  return dlopen(known->path.empty() ? nullptr : known->path.c_str(), RTLD_NOW | RTLD_NOLOAD);
}

// A function that was asked for before: the library asks at each call. Null for others.
FARPROC KnownFunction(HMODULE module, std::string_view name) {
  LoadedLibraries& loaded = Loaded();
  const std::lock_guard lock(loaded.mutex);
  const auto library = loaded.byModule.find(module);
  if (library == loaded.byModule.end()) return nullptr;
  const auto known = library->second.found.find(name);
  return known == library->second.found.end() ? nullptr : known->second;
}

void Remember(HMODULE module, const char* name, FARPROC function) {
  LoadedLibraries& loaded = Loaded();
  const std::lock_guard lock(loaded.mutex);
  const auto library = loaded.byModule.find(module);
  if (library != loaded.byModule.end()) library->second.found.emplace(name, function);
}

}  // namespace

HMODULE platform::ModuleAt(const void* address) {
  Dl_info info{};
  return dladdr(address, &info) == 0 ? nullptr : static_cast<HMODULE>(info.dli_fbase);
}

HMODULE WINAPI LoadLibraryA(LPCSTR fileName) {
  if (fileName == nullptr || *fileName == '\0') {
    return Fail<HMODULE>(ERROR_MOD_NOT_FOUND, nullptr);
  }
  const std::string path = Locate(LibraryFile(fileName));
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    const bool present = path.find('/') != std::string::npos && access(path.c_str(), F_OK) == 0;
    return Fail<HMODULE>(present ? ERROR_BAD_EXE_FORMAT : ERROR_MOD_NOT_FOUND, nullptr);
  }
  HMODULE module = ModuleOf(handle);
  const std::lock_guard lock(Loaded().mutex);
  ++Loaded().byModule.try_emplace(module, Library{handle, 0, {}}).first->second.useCount;
  return module;
}

HMODULE WINAPI LoadLibraryExW(LPCWSTR fileName, HANDLE /*reserved*/, DWORD flags) {
  const std::string path = platform::Utf8(fileName);
  if (flags != LOAD_WITH_ALTERED_SEARCH_PATH || path.find_first_of("/\\") == std::string::npos) {
    platform::Unsupported("LoadLibraryExW", "anything but a library's whole path");
  }
  return LoadLibraryA(path.c_str());
}

DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD size) {
  const std::vector<Module> modules = Modules();
  const auto known = module == nullptr ? modules.begin() : FindModule(modules, module);
  if (known == modules.end()) return Fail<DWORD>(ERROR_MOD_NOT_FOUND, 0);
  std::error_code error;
  return platform::CopyPath(known->path.empty()
                                ? std::filesystem::read_symlink("/proc/self/exe", error)
                                : std::filesystem::absolute(known->path, error),
                            path, size);
}

BOOL WINAPI FreeLibrary(HMODULE module) {
  LoadedLibraries& loaded = Loaded();
  std::unique_lock lock(loaded.mutex);
  const auto found = loaded.byModule.find(module);
  if (found == loaded.byModule.end()) {
    lock.unlock();
    // What came with the program cannot be unloaded, and Windows does not call that a failure.
    return IsModule(module) ? TRUE : Fail<BOOL>(ERROR_MOD_NOT_FOUND, FALSE);
  }
  void* handle = found->second.handle;
  if (--found->second.useCount == 0) loaded.byModule.erase(found);
  lock.unlock();
  dlclose(handle);
  return TRUE;
}

FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name) {
  if (reinterpret_cast<std::uintptr_t>(name) <= 0xFFFF) {
    platform::Unsupported("GetProcAddress", "a function's number instead of its name");
  }
  HMODULE owner = module == nullptr ? GetModuleHandleA(nullptr) : module;
  if (FARPROC known = KnownFunction(owner, name); known != nullptr) return known;
  void* handle = Reopen(owner);
  if (handle == nullptr) return Fail<FARPROC>(ERROR_MOD_NOT_FOUND, nullptr);
  void* address = dlsym(handle, name);
  dlclose(handle);
  // dlsym also looks into the libraries that this one needs; Windows does not.
  if (address == nullptr || platform::ModuleAt(address) != owner) {
    return Fail<FARPROC>(ERROR_PROC_NOT_FOUND, nullptr);
  }
  auto function = reinterpret_cast<FARPROC>(address);
  Remember(owner, name, function);
  return function;
}

HMODULE WINAPI GetModuleHandleA(LPCSTR fileName) {
  if (fileName == nullptr) return Modules().front().handle;
  const std::string file = LibraryFile(fileName);
  const std::string path = file.find('/') == std::string::npos ? PathOfLoaded(file) : file;
  void* handle = path.empty() ? nullptr : dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (handle == nullptr) return Fail<HMODULE>(ERROR_MOD_NOT_FOUND, nullptr);
  HMODULE module = ModuleOf(handle);
  dlclose(handle);
  return module;
}

BOOL WINAPI SetDllDirectoryA(LPCSTR directory) {
  std::optional<std::string> path;
  if (directory != nullptr) path = directory;
  if (path) std::replace(path->begin(), path->end(), '\\', '/');
  const std::lock_guard lock(Loaded().mutex);
  Loaded().extraDirectory = std::move(path);
  return TRUE;
}
