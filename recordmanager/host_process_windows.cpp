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

// Whose turn it is: a thread and the time when it began, in one number, as a thread may be ended
// between any two. For the same reason nobody ever holds a lock here.
using Turn = LONGLONG;
constexpr Turn kNobodys = 0;
constexpr int kTimeBits = 32;

volatile Turn turn = kNobodys;
volatile LONG waiting = 0;  // at least as many as there are: who was ended there is counted, too
HANDLE turnEnds = nullptr;

Turn MyTurn() {
  return static_cast<Turn>(GetCurrentThreadId()) << kTimeBits | static_cast<Turn>(GetTickCount());
}

// Returns whose turn it was.
Turn TakeTurnOf(Turn wanted) { return InterlockedCompareExchange64(&turn, MyTurn(), wanted); }

// No call makes another: whoever has the turn and asks for it has left a call. Of a thread that
// lives, or whose number is another's by now, only the time tells. Most turns end before it is
// worth asking.
bool HasLeft(Turn others) {
  const DWORD lasts = GetTickCount() - static_cast<DWORD>(others);
  const auto thread = static_cast<DWORD>(others >> kTimeBits);
  if (lasts < kBetweenLooks) return false;
  if (thread == GetCurrentThreadId() || lasts > kLongestTurn) return true;
  HANDLE const alive = OpenThread(SYNCHRONIZE, FALSE, thread);
  if (alive == nullptr) return GetLastError() == ERROR_INVALID_PARAMETER;
  const bool hasEnded = WaitForSingleObject(alive, 0) == WAIT_OBJECT_0;
  CloseHandle(alive);
  return hasEnded;
}

// All threads but one are ended where they are when the process ends.
bool WaitForTurn() {
  for (;;) {
    const Turn others = TakeTurnOf(kNobodys);
    if (others == kNobodys) return true;
    if (RtlDllShutdownInProgress() != 0 || HasLeft(others)) return false;
    if (WaitForSingleObject(turnEnds, kBetweenLooks) == WAIT_FAILED) Sleep(1);
  }
}

}  // namespace

namespace recordmanager {

// A turn never ends when its thread has ended within it, as all but one do when the process ends,
// or has left it by an exception after which the host goes on. What is half done then stays so: all
// are kept out, as if the process had been killed.
int TakeTurn() {
  if (TakeTurnOf(kNobodys) == kNobodys) return btrieve::kSuccess;
  InterlockedIncrement(&waiting);
  const bool isOurs = WaitForTurn();
  InterlockedDecrement(&waiting);
  return isOurs ? btrieve::kSuccess : btrieve::kFileInUse;
}

void EndTurn() {
  InterlockedExchange64(&turn, kNobodys);
  if (waiting != 0) SetEvent(turnEnds);
}

}  // namespace recordmanager

extern "C" BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD reason, void* processEnds) {
  if (reason == DLL_PROCESS_ATTACH) turnEnds = CreateEventA(nullptr, FALSE, FALSE, nullptr);
  // Otherwise a thread is in a call, which is then as if it were killed.
  if (reason == DLL_PROCESS_DETACH && TakeTurnOf(kNobodys) == kNobodys) {
    recordmanager::OnEnd();
    if (processEnds != nullptr) {
      recordmanager::EndTurn();  // some hosts call until the very end
    } else {
      sqlite3_shutdown();
      __gnu_cxx::__freeres();
      CloseHandle(turnEnds);
    }
  }
  return TRUE;
}
