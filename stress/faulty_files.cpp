#include "stress/faulty_files.h"

#include <utility>

namespace stress {
namespace {

// How the request fails; SQLITE_OK: not at all.
int FailureOf(Request::Kind kind, DiskFault fault) {
  struct Failure {
    int ioError;
    int full = SQLITE_OK;
  };
  constexpr Failure kFailures[] = {{SQLITE_OK},
                                   {SQLITE_IOERR_DELETE},
                                   {SQLITE_IOERR_ACCESS},
                                   {SQLITE_IOERR_READ},
                                   {SQLITE_IOERR_WRITE, SQLITE_FULL},
                                   {SQLITE_IOERR_TRUNCATE},
                                   {SQLITE_IOERR_FSYNC},
                                   {SQLITE_IOERR_FSTAT},
                                   {SQLITE_IOERR_LOCK},
                                   {SQLITE_IOERR_CHECKRESERVEDLOCK},
                                   {SQLITE_IOERR_SHMMAP, SQLITE_IOERR_SHMSIZE},
                                   {SQLITE_IOERR_SHMLOCK}};
  if (fault == DiskFault::kCannotOpen) return kind == Request::kOpen ? SQLITE_CANTOPEN : SQLITE_OK;
  return fault == DiskFault::kFull ? kFailures[kind].full : kFailures[kind].ioError;
}

}  // namespace

void FaultyFiles::Fail(DiskFault fault, int nth, bool lasting) {
  fault_ = fault;
  left_ = nth;
  lasting_ = lasting;
}

bool FaultyFiles::Heal() {
  left_ = 0;
  return std::exchange(failed_, false);
}

int FaultyFiles::Answer(const Request& request) {
  const int failure = FailureOf(request.kind, fault_);
  if (failure == SQLITE_OK || left_ == 0 || --left_ > 0) return SQLITE_OK;
  left_ = lasting_ ? 1 : 0;
  failed_ = true;
  return failure;
}

}  // namespace stress
