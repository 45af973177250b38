#include "stress/faulty_files.h"

#include <sqlite3.h>

#include <map>
#include <memory>

namespace stress {
namespace {

using Methods = sqlite3_io_methods;

struct Plan {
  DiskFault fault = DiskFault::kFull;
  int left = 0;  // requests until the one that fails; 0: none does
  bool lasting = false;
  bool failed = false;

  bool Strikes(bool mayFail) {
    if (!mayFail || left == 0 || --left > 0) return false;
    left = lasting ? 1 : 0;
    failed = true;
    return true;
  }
};

Plan plan;
sqlite3_vfs* real = nullptr;

// A file's methods, and those that they stand before.
struct Shim {
  Methods methods;
  const Methods* real;
};

const Methods& RealMethodsOf(const sqlite3_file* file) {
  return *reinterpret_cast<const Shim*>(file->pMethods)->real;
}

template <auto method, int fullCode, int errorCode>
struct Failing;

template <class... Arguments, int (*Methods::*method)(sqlite3_file*, Arguments...), int fullCode,
          int errorCode>
struct Failing<method, fullCode, errorCode> {
  static int Call(sqlite3_file* file, Arguments... arguments) {
    const bool full = plan.fault == DiskFault::kFull;
    if (plan.Strikes(full ? fullCode != SQLITE_OK : plan.fault == DiskFault::kIoError)) {
      return full ? fullCode : errorCode;
    }
    return (RealMethodsOf(file).*method)(file, arguments...);
  }
  static void Install(Methods& methods) { methods.*method = &Call; }
};

std::unique_ptr<Shim> MakeShim(const Methods& methods) {
  auto shim = std::make_unique<Shim>(Shim{methods, &methods});
  Failing<&Methods::xWrite, SQLITE_FULL, SQLITE_IOERR_WRITE>::Install(shim->methods);
  Failing<&Methods::xShmMap, SQLITE_IOERR_SHMSIZE, SQLITE_IOERR_SHMMAP>::Install(shim->methods);
  Failing<&Methods::xRead, SQLITE_OK, SQLITE_IOERR_READ>::Install(shim->methods);
  // Nobody pulls the plug: those that do not fail need not be carried out.
  shim->methods.xSync = [](sqlite3_file*, int) { return SQLITE_OK; };
  Failing<&Methods::xSync, SQLITE_OK, SQLITE_IOERR_FSYNC>::Install(shim->methods);
  Failing<&Methods::xTruncate, SQLITE_OK, SQLITE_IOERR_TRUNCATE>::Install(shim->methods);
  Failing<&Methods::xFileSize, SQLITE_OK, SQLITE_IOERR_FSTAT>::Install(shim->methods);
  Failing<&Methods::xLock, SQLITE_OK, SQLITE_IOERR_LOCK>::Install(shim->methods);
  return shim;
}

int Open(sqlite3_vfs* /*shim*/, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  file->pMethods = nullptr;
  if (plan.Strikes(plan.fault == DiskFault::kCannotOpen)) return SQLITE_CANTOPEN;
  const int result = real->xOpen(real, name, file, flags, outFlags);
  if (file->pMethods != nullptr) {
    static std::map<const Methods*, std::unique_ptr<Shim>> shims;
    auto& shim = shims[file->pMethods];
    if (shim == nullptr) shim = MakeShim(*file->pMethods);
    file->pMethods = &shim->methods;
  }
  return result;
}

sqlite3_vfs shimVfs;

}  // namespace

FaultyFiles::FaultyFiles() {
  real = sqlite3_vfs_find(nullptr);
  shimVfs = *real;
  shimVfs.zName = "faulty";
  shimVfs.xOpen = &Open;
  sqlite3_vfs_register(&shimVfs, 1);
}

FaultyFiles::~FaultyFiles() {
  Heal();
  sqlite3_vfs_unregister(&shimVfs);
  sqlite3_vfs_register(real, 1);
}

void FaultyFiles::Fail(DiskFault fault, int nth, bool lasting) { plan = {fault, nth, lasting}; }

bool FaultyFiles::Heal() {
  const bool failed = plan.failed;
  plan = {};
  return failed;
}

}  // namespace stress
