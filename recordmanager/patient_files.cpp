#include "recordmanager/patient_files.h"

#include <sqlite3.h>

#include <string>

#include "recordmanager/host_files.h"
#include "recordmanager/patience.h"

namespace recordmanager {
namespace {

constinit sqlite3_vfs patientFiles{};
constinit sqlite3_vfs* realFiles = nullptr;

// A file that SQLite wants to open, by name and by what it is.
class Wanted {
 public:
  Wanted(const char* name, int flags)
      : name_(name), flags_(flags), patience_(DatabaseOf(name_, flags)) {}

  // Whether nobody denies it, at last. SQLite opens the shared memory itself, right after the log.
  bool IsFree() const {
    while (IsDenied()) {
      if (!patience_.Lasts()) return false;
    }
    return true;
  }

  bool IsDenied() const {
    const bool toWrite = (flags_ & SQLITE_OPEN_READWRITE) != 0;
    return IsDeniedByOthers(name_, toWrite) ||
           (toWrite && (flags_ & SQLITE_OPEN_WAL) != 0 &&
            IsDeniedByOthers(DatabaseOf(name_, flags_) + "-shm", true));
  }

 private:
  static std::string DatabaseOf(const std::string& name, int flags) {
    const bool isBeside = (flags & (SQLITE_OPEN_WAL | SQLITE_OPEN_MAIN_JOURNAL)) != 0;
    return isBeside ? name.substr(0, name.rfind('-')) : name;
  }

  std::string name_;
  int flags_;
  Patience patience_;
};

// Whoever denied the file may have gone right after SQLite met him; what fails for another reason
// does so again.
int OpenPatiently(const char* name, sqlite3_file* file, int flags, int* outFlags) {
  const Wanted wanted(name, flags);
  bool wasDenied = true;
  while (wanted.IsFree()) {
    int got = flags;
    const int result = realFiles->xOpen(realFiles, name, file, flags, &got);
    if (outFlags != nullptr) *outFlags = got;
    const bool isAsWanted = result == SQLITE_OK && (flags & ~got & SQLITE_OPEN_READWRITE) == 0;
    const bool isDenied = !isAsWanted && wanted.IsDenied();
    if (isAsWanted || (!isDenied && !wasDenied)) return result;
    wasDenied = isDenied;
    if (result == SQLITE_OK) file->pMethods->xClose(file);
  }
  file->pMethods = nullptr;
  return SQLITE_BUSY;
}

int Open(sqlite3_vfs* /*files*/, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  if (name == nullptr) return realFiles->xOpen(realFiles, name, file, flags, outFlags);
  try {
    return OpenPatiently(name, file, flags, outFlags);
  } catch (...) {  // SQLite knows no exceptions
    file->pMethods = nullptr;
    return SQLITE_NOMEM;
  }
}

}  // namespace

const char* PatientFiles() {
  sqlite3_vfs* found = sqlite3_vfs_find(nullptr);
  if (found == nullptr) return nullptr;
  if (found != realFiles) {
    sqlite3_vfs_unregister(&patientFiles);
    realFiles = found;
    patientFiles = *found;
    patientFiles.zName = "patient";
    patientFiles.xOpen = &Open;
    sqlite3_vfs_register(&patientFiles, 0);
  }
  return patientFiles.zName;
}

}  // namespace recordmanager
