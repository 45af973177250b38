#include <pthread.h>

#include <mutex>

#include "btrieve/btrieve.h"
#include "recordmanager/host_process.h"

extern "C" void ForgetParent();  // inherited_locks.c

namespace recordmanager {
namespace {

constinit std::mutex turns;
constinit int wasCancelable = PTHREAD_CANCEL_ENABLE;  // whoever has the turn
constinit bool seesForks = false;

// How often this thread has the turn, or waits for it: for a call, a fork, or the end. At a place
// that needs no memory.
[[gnu::tls_model("initial-exec")]] constinit thread_local volatile int turnsHere = 0;

void LockTurns() {
  turnsHere = turnsHere + 1;
  turns.lock();
}

void UnlockTurns() {
  turns.unlock();
  turnsHere = turnsHere - 1;
}

// Nobody was in a call when the process was copied.
void BecomeChild() {
  ForgetParent();
  OnFork();
  UnlockTurns();
}

bool SeeForks() {
  seesForks = seesForks || pthread_atfork(&LockTurns, &UnlockTurns, &BecomeChild) == 0;
  return seesForks;
}

// Not only in the first call: if another thread forks meanwhile, the child would wait for its end.
__attribute__((constructor)) void Begin() { SeeForks(); }

__attribute__((destructor)) void End() {
  turnsHere = turnsHere + 1;
  if (turns.try_lock()) {  // or somebody is in a call, and will be as if he were killed
    OnEnd();
    turns.unlock();
  }
  turnsHere = turnsHere - 1;
}

}  // namespace

// What a call does may be where a thread is canceled, and what it holds then would stay held.
int TakeTurn() {
  if (turnsHere != 0) return btrieve::kFileInUse;
  int before = PTHREAD_CANCEL_ENABLE;
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before);
  LockTurns();
  wasCancelable = before;
  if (SeeForks()) return btrieve::kSuccess;
  EndTurn();
  return btrieve::kOutOfMemory;
}

void EndTurn() {
  const int before = wasCancelable;
  UnlockTurns();
  pthread_setcancelstate(before, nullptr);
}

}  // namespace recordmanager
