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

// Whether this thread has the turn, or waits for it. At a place that needs no memory.
[[gnu::tls_model("initial-exec")]] constinit thread_local volatile bool isInCall = false;

void LockTurns() { turns.lock(); }
void UnlockTurns() { turns.unlock(); }

// Nobody was in a call when the process was copied.
void BecomeChild() {
  ForgetParent();
  OnFork();
  turns.unlock();
}

bool SeeForks() {
  seesForks = seesForks || pthread_atfork(&LockTurns, &UnlockTurns, &BecomeChild) == 0;
  return seesForks;
}

// Not only in the first call: if another thread forks meanwhile, the child would wait for its end.
__attribute__((constructor)) void Begin() { SeeForks(); }

__attribute__((destructor)) void End() {
  if (!turns.try_lock()) return;  // somebody is in a call, and will be as if he were killed
  OnEnd();
  turns.unlock();
}

}  // namespace

// What a call does may be where a thread is canceled, and what it holds then would stay held.
int TakeTurn() {
  if (isInCall) return btrieve::kFileInUse;
  isInCall = true;
  int before = PTHREAD_CANCEL_ENABLE;
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before);
  turns.lock();
  wasCancelable = before;
  if (SeeForks()) return btrieve::kSuccess;
  EndTurn();
  return btrieve::kOutOfMemory;
}

void EndTurn() {
  const int before = wasCancelable;
  turns.unlock();
  isInCall = false;
  pthread_setcancelstate(before, nullptr);
}

}  // namespace recordmanager
