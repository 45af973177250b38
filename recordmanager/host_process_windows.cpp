#include <sqlite3.h>

#include <atomic>

#include "btrieve/btrieve.h"
#include "platform/windows_api.h"
#include "recordmanager/host_process.h"

extern "C" BOOLEAN NTAPI RtlDllShutdownInProgress();  // documented, but declared for drivers alone

namespace __gnu_cxx {
void __freeres();  // gives back what the compiler's runtime keeps for exceptions without memory
}

namespace {

SRWLOCK turns = SRWLOCK_INIT;
std::atomic<DWORD> holder = 0;  // the thread whose turn it is

// No call makes another: whoever holds the turn and asks for it has left a call.
bool HasHolderLeft() {
  const DWORD thread = holder;
  if (thread == 0 || thread == GetCurrentThreadId()) return thread != 0;
  HANDLE const alive = OpenThread(SYNCHRONIZE, FALSE, thread);
  const bool hasEnded = alive == nullptr ? GetLastError() == ERROR_INVALID_PARAMETER
                                         : WaitForSingleObject(alive, 0) == WAIT_OBJECT_0;
  if (alive != nullptr) CloseHandle(alive);
  return hasEnded && holder == thread;  // it may have ended its turn before itself
}

}  // namespace

namespace recordmanager {

// A turn never ends when its thread has ended within it, as all but one do when the process ends,
// or has left it by an exception after which the host goes on. What is half done then stays so: all
// are kept out, as if the process had been killed. Whoever waits already when that happens waits
// for ever.
int TakeTurn() {
  if (TryAcquireSRWLockExclusive(&turns) == 0) {
    if (RtlDllShutdownInProgress() != 0 || HasHolderLeft()) return btrieve::kFileInUse;
    AcquireSRWLockExclusive(&turns);
  }
  holder = GetCurrentThreadId();
  return btrieve::kSuccess;
}

void EndTurn() {
  holder = 0;
  ReleaseSRWLockExclusive(&turns);
}

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
