#include <sqlite3.h>

#include "btrieve/btrieve.h"
#include "platform/windows_api.h"
#include "recordmanager/host_process.h"

extern "C" BOOLEAN NTAPI RtlDllShutdownInProgress();  // documented, but declared for drivers alone

namespace __gnu_cxx {
void __freeres();  // gives back what the compiler's runtime keeps for exceptions without memory
}

namespace {

SRWLOCK turns = SRWLOCK_INIT;

}  // namespace

namespace recordmanager {

// While the process ends, only one thread is left: a turn that is taken then never ends.
int TakeTurn() {
  if (TryAcquireSRWLockExclusive(&turns) != 0) return btrieve::kSuccess;
  if (RtlDllShutdownInProgress() != 0) return btrieve::kFileInUse;
  AcquireSRWLockExclusive(&turns);
  return btrieve::kSuccess;
}

void EndTurn() { ReleaseSRWLockExclusive(&turns); }

}  // namespace recordmanager

extern "C" BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD reason, void* processEnds) {
  // Unless a thread is in a call, which is then as if it were killed.
  if (reason != DLL_PROCESS_DETACH || TryAcquireSRWLockExclusive(&turns) == 0) return TRUE;
  recordmanager::OnEnd();
  if (processEnds == nullptr) {
    sqlite3_shutdown();
    __gnu_cxx::__freeres();
  }
  ReleaseSRWLockExclusive(&turns);
  return TRUE;
}
