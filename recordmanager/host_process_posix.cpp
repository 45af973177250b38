#include <pthread.h>

#include <mutex>

#include "btrieve/btrieve.h"
#include "recordmanager/host_process.h"

extern "C" void ForgetParent();  // inherited_locks.c

namespace recordmanager {
namespace {

constinit std::mutex turns;

void LockTurns() { turns.lock(); }
void UnlockTurns() { turns.unlock(); }

// Nobody was in a call when the process was copied.
void BecomeChild() {
  ForgetParent();
  OnFork();
  turns.unlock();
}

__attribute__((destructor)) void End() {
  if (!turns.try_lock()) return;  // somebody is in a call, and will be as if he were killed
  OnEnd();
  turns.unlock();
}

}  // namespace

int TakeTurn() {
  static bool seesForks = false;
  turns.lock();
  seesForks = seesForks || pthread_atfork(&LockTurns, &UnlockTurns, &BecomeChild) == 0;
  if (!seesForks) turns.unlock();
  return seesForks ? btrieve::kSuccess : btrieve::kOutOfMemory;
}

void EndTurn() { turns.unlock(); }

}  // namespace recordmanager
