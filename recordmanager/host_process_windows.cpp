#include <sqlite3.h>

#include "btrieve/btrieve.h"
#include "platform/windows_api.h"
#include "recordmanager/host_process.h"

extern "C" BOOLEAN NTAPI RtlDllShutdownInProgress();  // documented, but declared for drivers alone

namespace __gnu_cxx {
void __freeres();  // gives back what the compiler's runtime keeps for exceptions without memory
}

namespace {

constexpr DWORD kBetweenLooks = 100;  // in milliseconds, as all times here
constexpr DWORD kLongestTurn = 30'000;

// Nobody keeps the lock during a call, as a turn may never end.
SRWLOCK lock = SRWLOCK_INIT;
CONDITION_VARIABLE turnEnds = CONDITION_VARIABLE_INIT;
DWORD holder = 0;  // the thread whose turn it is
DWORD begin = 0;   // of its turn

// Unless a thread was ended with the lock, as all but one are when the process ends.
bool Lock() {
  if (TryAcquireSRWLockExclusive(&lock) != 0) return true;
  if (RtlDllShutdownInProgress() != 0) return false;
  AcquireSRWLockExclusive(&lock);
  return true;
}

// No call makes another: whoever holds the turn and asks for it has left a call. Of a thread that
// lives, or whose number is another's by now, only the time tells. Most turns end before it is
// worth asking.
bool HasHolderLeft() {
  const DWORD lasts = GetTickCount() - begin;
  if (lasts < kBetweenLooks) return false;
  if (holder == GetCurrentThreadId() || lasts > kLongestTurn) return true;
  HANDLE const alive = OpenThread(SYNCHRONIZE, FALSE, holder);
  if (alive == nullptr) return GetLastError() == ERROR_INVALID_PARAMETER;
  const bool hasEnded = WaitForSingleObject(alive, 0) == WAIT_OBJECT_0;
  CloseHandle(alive);
  return hasEnded;
}

bool IsTurnFree() {
  while (holder != 0) {
    if (RtlDllShutdownInProgress() != 0 || HasHolderLeft()) return false;
    SleepConditionVariableSRW(&turnEnds, &lock, kBetweenLooks, 0);
  }
  return true;
}

}  // namespace

namespace recordmanager {

// A turn never ends when its thread has ended within it, as all but one do when the process ends,
// or has left it by an exception after which the host goes on. What is half done then stays so: all
// are kept out, as if the process had been killed.
int TakeTurn() {
  if (!Lock()) return btrieve::kFileInUse;
  const bool isOurs = IsTurnFree();
  if (isOurs) {
    holder = GetCurrentThreadId();
    begin = GetTickCount();
  }
  ReleaseSRWLockExclusive(&lock);
  return isOurs ? btrieve::kSuccess : btrieve::kFileInUse;
}

void EndTurn() {
  if (!Lock()) return;
  holder = 0;
  ReleaseSRWLockExclusive(&lock);
  WakeConditionVariable(&turnEnds);
}

}  // namespace recordmanager

extern "C" BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD reason, void* processEnds) {
  if (reason != DLL_PROCESS_DETACH || TryAcquireSRWLockExclusive(&lock) == 0) return TRUE;
  if (holder == 0) {  // or a thread is in a call, which is then as if it were killed
    recordmanager::OnEnd();
    if (processEnds == nullptr) {
      sqlite3_shutdown();
      __gnu_cxx::__freeres();
    }
  }
  ReleaseSRWLockExclusive(&lock);
  return TRUE;
}
