#include "stress/hooked_files.h"

#include <algorithm>
#include <map>
#include <memory>

namespace stress {
namespace {

using Methods = sqlite3_io_methods;

HookedFiles* hooks = nullptr;
sqlite3_vfs* real = nullptr;

// A file's methods, and those that they stand before.
struct Shim {
  Methods methods;
  const Methods* real;
};

const Methods& RealMethodsOf(const sqlite3_file* file) {
  return *reinterpret_cast<const Shim*>(file->pMethods)->real;
}

template <class... Arguments>
Request Describe(Request::Kind kind, const sqlite3_file* file, Arguments... /*of no interest*/) {
  return {.kind = kind, .file = file};
}
Request Describe(Request::Kind kind, const sqlite3_file* file, const void* bytes, int size,
                 sqlite3_int64 place) {
  return {.kind = kind,
          .file = file,
          .bytes = {static_cast<const char*>(bytes), static_cast<std::size_t>(size)},
          .place = place};
}
Request Describe(Request::Kind kind, const sqlite3_file* file, sqlite3_int64 size) {
  return {.kind = kind, .file = file, .place = size};
}

template <auto method, Request::Kind kind>
struct Hook;

template <class... Arguments, int (*Methods::*method)(sqlite3_file*, Arguments...),
          Request::Kind kind>
struct Hook<method, kind> {
  static int Call(sqlite3_file* file, Arguments... arguments) {
    const int answer = hooks->Answer(Describe(kind, file, arguments...));
    return answer != SQLITE_OK ? answer : (RealMethodsOf(file).*method)(file, arguments...);
  }
  static void Install(Methods& methods) { methods.*method = &Call; }
};

std::unique_ptr<Shim> MakeShim(const Methods& methods) {
  auto shim = std::make_unique<Shim>(Shim{methods, &methods});
  Hook<&Methods::xRead, Request::kRead>::Install(shim->methods);
  Hook<&Methods::xWrite, Request::kWrite>::Install(shim->methods);
  Hook<&Methods::xTruncate, Request::kTruncate>::Install(shim->methods);
  Hook<&Methods::xSync, Request::kSync>::Install(shim->methods);
  Hook<&Methods::xFileSize, Request::kFileSize>::Install(shim->methods);
  Hook<&Methods::xLock, Request::kLock>::Install(shim->methods);
  Hook<&Methods::xCheckReservedLock, Request::kCheckLock>::Install(shim->methods);
  Hook<&Methods::xShmMap, Request::kShareMemory>::Install(shim->methods);
  shim->methods.xShmLock = [](sqlite3_file* file, int offset, int count, int flags) {
    const bool takes = (flags & SQLITE_SHM_LOCK) != 0;
    const int answer =
        takes ? hooks->Answer({.kind = Request::kLockMemory, .file = file}) : SQLITE_OK;
    return answer != SQLITE_OK ? answer : RealMethodsOf(file).xShmLock(file, offset, count, flags);
  };
  return shim;
}

int Open(sqlite3_vfs* /*shim*/, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  file->pMethods = nullptr;
  const int answer = hooks->Answer({.kind = Request::kOpen, .path = name});
  if (answer != SQLITE_OK) return answer;
  const int result = real->xOpen(real, name, file, flags, outFlags);
  if (file->pMethods != nullptr) {
    static std::map<const Methods*, std::unique_ptr<Shim>> shims;
    auto& shim = shims[file->pMethods];
    if (shim == nullptr) shim = MakeShim(*file->pMethods);
    file->pMethods = &shim->methods;
    hooks->NoteOpened(file, name);
  }
  return result;
}

int Delete(sqlite3_vfs* /*shim*/, const char* name, int syncFolder) {
  const int answer = hooks->Answer({.kind = Request::kDelete, .path = name});
  return answer != SQLITE_OK ? answer : real->xDelete(real, name, syncFolder);
}

int Access(sqlite3_vfs* /*shim*/, const char* name, int flags, int* result) {
  const int answer = hooks->Answer({.kind = Request::kAccess, .path = name});
  return answer != SQLITE_OK ? answer : real->xAccess(real, name, flags, result);
}

sqlite3_vfs shimVfs;

}  // namespace

HookedFiles::HookedFiles() {
  real = sqlite3_vfs_find(nullptr);
  shimVfs = *real;
  shimVfs.zName = "hooked";
  shimVfs.xOpen = &Open;
  shimVfs.xDelete = &Delete;
  shimVfs.xAccess = &Access;
  // Not by chance: the same happens in each run.
  shimVfs.xRandomness = [](sqlite3_vfs* /*shim*/, int size, char* bytes) {
    std::fill_n(bytes, size, '\0');
    return size;
  };
  sqlite3_randomness(0, nullptr);
  hooks = this;
  sqlite3_vfs_register(&shimVfs, 1);
}

HookedFiles::~HookedFiles() {
  sqlite3_vfs_unregister(&shimVfs);
  sqlite3_vfs_register(real, 1);
}

}  // namespace stress
