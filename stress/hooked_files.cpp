#include "stress/hooked_files.h"

#include <algorithm>
#include <map>

namespace stress {
namespace {

using Methods = sqlite3_io_methods;

HookedFiles* hooks = nullptr;
sqlite3_vfs* real = nullptr;

// Those of the file itself, and ours before them. Others may put theirs before ours.
struct Layers {
  const Methods* real;
  Methods shim;
};
std::map<const sqlite3_file*, Layers> layers;

const Methods& RealMethodsOf(const sqlite3_file* file) { return *layers.at(file).real; }

template <class... Arguments>
Request Describe(int kind, const sqlite3_file* file, Arguments... /*of no interest*/) {
  return {.kind = kind, .file = file};
}
Request Describe(int kind, const sqlite3_file* file, const void* bytes, int size,
                 sqlite3_int64 place) {
  return {.kind = kind,
          .file = file,
          .bytes = {static_cast<const char*>(bytes), static_cast<std::size_t>(size)},
          .place = place};
}
Request Describe(int kind, const sqlite3_file* file, sqlite3_int64 size) {
  return {.kind = kind, .file = file, .place = size};
}

template <auto method, int kind>
struct Hook;

template <class... Arguments, int (*Methods::*method)(sqlite3_file*, Arguments...), int kind>
struct Hook<method, kind> {
  static int Call(sqlite3_file* file, Arguments... arguments) {
    const int answer = hooks->Answer(Describe(kind, file, arguments...));
    return answer != SQLITE_OK ? answer : (RealMethodsOf(file).*method)(file, arguments...);
  }
  static void Install(Methods& methods) { methods.*method = &Call; }
};

Methods MakeShim(Methods shim) {
  Hook<&Methods::xRead, SQLITE_IOERR_READ>::Install(shim);
  Hook<&Methods::xWrite, SQLITE_IOERR_WRITE>::Install(shim);
  Hook<&Methods::xTruncate, SQLITE_IOERR_TRUNCATE>::Install(shim);
  Hook<&Methods::xSync, SQLITE_IOERR_FSYNC>::Install(shim);
  Hook<&Methods::xFileSize, SQLITE_IOERR_FSTAT>::Install(shim);
  Hook<&Methods::xLock, SQLITE_IOERR_LOCK>::Install(shim);
  Hook<&Methods::xCheckReservedLock, SQLITE_IOERR_CHECKRESERVEDLOCK>::Install(shim);
  Hook<&Methods::xShmMap, SQLITE_IOERR_SHMMAP>::Install(shim);
  shim.xShmLock = [](sqlite3_file* file, int offset, int count, int flags) {
    const bool takes = (flags & SQLITE_SHM_LOCK) != 0;
    const int answer =
        takes ? hooks->Answer({.kind = SQLITE_IOERR_SHMLOCK, .file = file}) : SQLITE_OK;
    return answer != SQLITE_OK ? answer : RealMethodsOf(file).xShmLock(file, offset, count, flags);
  };
  return shim;
}

int Open(sqlite3_vfs* /*shim*/, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  file->pMethods = nullptr;
  const int answer = hooks->Answer({.kind = SQLITE_CANTOPEN, .path = name});
  if (answer != SQLITE_OK) return answer;
  const int result = real->xOpen(real, name, file, flags, outFlags);
  if (file->pMethods != nullptr) {
    layers[file] = {file->pMethods, MakeShim(*file->pMethods)};
    file->pMethods = &layers[file].shim;
    hooks->NoteOpened(file, name);
  }
  return result;
}

int Delete(sqlite3_vfs* /*shim*/, const char* name, int syncFolder) {
  const int answer = hooks->Answer({.kind = SQLITE_IOERR_DELETE, .path = name});
  return answer != SQLITE_OK ? answer : real->xDelete(real, name, syncFolder);
}

int Access(sqlite3_vfs* /*shim*/, const char* name, int flags, int* result) {
  const int answer = hooks->Answer({.kind = SQLITE_IOERR_ACCESS, .path = name});
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
