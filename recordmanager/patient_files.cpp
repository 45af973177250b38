#include "recordmanager/patient_files.h"

#include <sqlite3.h>

#include <algorithm>
#include <string>

#include "recordmanager/host_files.h"
#include "recordmanager/journal_end.h"
#include "recordmanager/patience.h"

namespace recordmanager {
namespace {

constinit sqlite3_vfs patientFiles{};
constinit sqlite3_vfs* realFiles = nullptr;

std::string DatabaseOf(const std::string& name, int flags) {
  const bool isBeside = (flags & (SQLITE_OPEN_WAL | SQLITE_OPEN_MAIN_JOURNAL)) != 0;
  return isBeside ? name.substr(0, name.rfind('-')) : name;
}

bool IsDenied(const std::string& name, const std::string& database, int flags) {
  const bool toWrite = (flags & SQLITE_OPEN_READWRITE) != 0;
  if (AccessTo(name, toWrite) == Access::kDenied) return true;
  // The memory that users of a log share is opened by SQLite itself, right after the log.
  const bool sharesMemory = toWrite && (flags & SQLITE_OPEN_WAL) != 0;
  return sharesMemory && AccessTo(database + "-shm", true) == Access::kDenied;
}

// Whether a log is asked for, made if need be, by somebody who should make none.
bool IsLogOfOthers(const std::string& database, int flags) {
  constexpr int kMakesLog = SQLITE_OPEN_WAL | SQLITE_OPEN_CREATE;
  return (flags & kMakesLog) == kMakesLog && !CanMakeLogFor(database);
}

bool HasMemory(const std::string& database) {
  int isThere = 1;
  const std::string memory = database + "-shm";
  realFiles->xAccess(realFiles, memory.c_str(), SQLITE_ACCESS_EXISTS, &isThere);
  return isThere != 0;
}

// `got` receives the flags that the file is open with.
int OpenPatiently(const char* name, sqlite3_file* file, int wanted, int& got) {
  const std::string path = name;
  const std::string database = DatabaseOf(path, wanted);
  const bool isOfOthers = IsLogOfOthers(database, wanted);
  if (isOfOthers && !HasMemory(database)) {  // which SQLite would make next
    file->pMethods = nullptr;
    return SQLITE_CANTOPEN;
  }
  const int flags = isOfOthers ? wanted & ~SQLITE_OPEN_CREATE : wanted;
  const bool toWrite = (flags & SQLITE_OPEN_READWRITE) != 0;
  const Patience patience(database);
  int result = SQLITE_OK;
  do {
    result = SQLITE_BUSY;
    if (IsDenied(path, database, flags)) continue;
    got = flags;
    result = realFiles->xOpen(realFiles, name, file, flags, &got);
    const bool isAsWanted = result == SQLITE_OK && (flags & ~got & SQLITE_OPEN_READWRITE) == 0;
    // The program that was in the way may have gone by now.
    if (isAsWanted || AccessTo(path, toWrite) == Access::kImpossible) return result;
    if (result == SQLITE_OK) {
      file->pMethods->xClose(file);
      result = SQLITE_BUSY;
    }
  } while (patience.Lasts());
  file->pMethods = nullptr;
  return result;  // of a file that nobody denies, why it cannot be opened all the same
}

// SQLite makes do with a journal that it can only read, and fails when it writes to it; and it does
// not tell a disk without room for one.
int OpenJournal(const char* name, sqlite3_file* file, int flags, int& got) {
  int result = OpenPatiently(name, file, flags, got);
  if (result == SQLITE_OK && (flags & ~got & SQLITE_OPEN_READWRITE) != 0) {
    file->pMethods->xClose(file);
    file->pMethods = nullptr;
    result = SQLITE_CANTOPEN;
  }
  if (result == SQLITE_OK) EndSurely(file, *realFiles);
  const bool isRefused = (result & 0xFF) == SQLITE_CANTOPEN && (flags & SQLITE_OPEN_CREATE) != 0;
  return isRefused && HasNoRoomBeside(name) ? SQLITE_FULL : result;
}

int Open(sqlite3_vfs* /*files*/, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  if (name == nullptr) return realFiles->xOpen(realFiles, name, file, flags, outFlags);
  file->pMethods = nullptr;
  try {
    const bool isJournal = (flags & SQLITE_OPEN_MAIN_JOURNAL) != 0;
    int got = flags;
    const int result =
        isJournal ? OpenJournal(name, file, flags, got) : OpenPatiently(name, file, flags, got);
    if (outFlags != nullptr) *outFlags = got;
    return result;
  } catch (...) {  // SQLite knows no exceptions
    if (file->pMethods != nullptr) file->pMethods->xClose(file);
    file->pMethods = nullptr;
    return SQLITE_NOMEM;
  }
}

int Delete(sqlite3_vfs* files, const char* name, int synchronise) {
  try {
    int result = SQLITE_IOERR_DELETE;
    if (!IsJournal(name) || IsDeletable(name)) {
      result = realFiles->xDelete(realFiles, name, synchronise);
    }
    return result == SQLITE_IOERR_DELETE && IsJournal(name) ? EndInPlace(*files, name) : result;
  } catch (...) {
    return SQLITE_NOMEM;
  }
}

// While somebody keeps the memory of a log locked, SQLite looks a hundred times, with pauses that
// would grow to ten seconds altogether.
int Sleep(sqlite3_vfs* /*files*/, int microseconds) {
  constexpr int kLongest = 40'000;
  const int pause = Patience::IsAnyInVain() ? 0 : std::min(microseconds, kLongest);
  return realFiles->xSleep(realFiles, pause);
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
    patientFiles.szOsFile = FileSizeWithEnd(*found);
    patientFiles.xOpen = &Open;
    patientFiles.xDelete = &Delete;
    patientFiles.xSleep = &Sleep;
    AdaptFileCalls();
    sqlite3_vfs_register(&patientFiles, 0);
  }
  return patientFiles.zName;
}

}  // namespace recordmanager
