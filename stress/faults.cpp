// `qlx_stress faults`: a disk that fails, at each request in turn.
#include <deque>
#include <iostream>
#include <set>
#include <string>
#include <utility>

#include "stress/hooked_files.h"
#include "stress/slot.h"
#include "stress/trials.h"
#include "testkit/engine_entry_point.h"

namespace stress {
namespace {

namespace fs = std::filesystem;

// How a request of this kind fails; SQLITE_OK: not at all.
using DiskFault = int(int kind);

int BeFull(int kind) {
  if (kind == SQLITE_IOERR_WRITE) return SQLITE_FULL;
  return kind == SQLITE_IOERR_SHMMAP ? SQLITE_IOERR_SHMSIZE : SQLITE_OK;
}
int HaveErrors(int kind) { return kind == SQLITE_CANTOPEN ? SQLITE_OK : kind; }
int OpenNothing(int kind) { return kind == SQLITE_CANTOPEN ? kind : SQLITE_OK; }

// A file system that fails on command.
class FaultyFiles : public HookedFiles {
 public:
  // The nth request from now on that may fail so, counted from 1, fails; if `lasting`, all behind
  // it do too.
  void Fail(DiskFault* fault, int nth, bool lasting) {
    fault_ = fault;
    left_ = nth;
    lasting_ = lasting;
  }

  // All is well again. False when nothing has failed since Fail.
  bool Heal() {
    left_ = 0;
    return std::exchange(failed_, false);
  }

  int Answer(const Request& request) override {
    const int failure = fault_(request.kind);
    if (failure == SQLITE_OK || left_ == 0 || --left_ > 0) return SQLITE_OK;
    left_ = lasting_ ? 1 : 0;
    failed_ = true;
    return failure;
  }

 private:
  DiskFault* fault_ = BeFull;
  int left_ = 0;  // requests until the one that fails; 0: none does
  bool lasting_ = false;
  bool failed_ = false;
};

constexpr int kSlotsOfADay = 2;

// The published ways of saying that a disk cannot be used.
void ExpectPublished(const Refusal& refusal) {
  for (const int status : {btrieve::kIoError, btrieve::kDiskFull, btrieve::kPermissionError}) {
    if (refusal.status == status) return;
  }
  throw refusal;
}

// A process that keeps some slots, and goes on when the disk fails. What became of a change that
// failed, the next process finds out: its slot is left alone until then.
void Work(const fs::path& folder, bool diskFails) {
  constexpr unsigned kStepsOfADay = 6;
  recordmanager::Engine engine;
  const auto manager = testkit::EntryPointOf(engine);
  btrieve::Client transaction(manager);
  std::deque<Slot> slots;
  for (int i = 0; i < kSlotsOfADay; ++i) slots.emplace_back(folder, i, manager, i);
  std::set<Slot*> uncertain;
  for (unsigned step = 0; step < kStepsOfADay; ++step) {
    Slot& slot = slots[step % kSlotsOfADay];
    if (uncertain.contains(&slot)) continue;
    try {
      slot.Check();
      uncertain.insert(&slot);
      slot.Step();
      uncertain.erase(&slot);
    } catch (const Refusal& refusal) {
      if (!diskFails) throw;
      ExpectPublished(refusal);
      const int status = transaction.Call(btrieve::kAbortTransaction);
      if (status != btrieve::kSuccess && status != btrieve::kNoTransaction) return;
    }
  }
}

struct FaultTrial {
  const char* name;
  DiskFault* fault;
  bool lasting;
};

// Lets every request fail in turn; returns how many there were.
int TryAll(const FaultTrial& trial, const fs::path& folder, bool rollbackJournal) {
  const fs::path sound = folder / "sound";
  const fs::path faulty = folder / "faulty";
  fs::remove_all(sound);
  MakeRecordsIn(sound);
  if (rollbackJournal) UseRollbackJournal(RecordsIn(sound));
  // Two days, so that the next has a change of each kind.
  Work(sound, false);
  Work(sound, false);
  FaultyFiles files;
  for (int n = 1;; ++n) {
    fs::remove_all(faulty);
    fs::copy(sound, faulty, fs::copy_options::recursive);
    files.Fail(trial.fault, n, trial.lasting);
    try {
      Work(faulty, true);
      if (!files.Heal()) return n - 1;
      // The next process finds all that was done, in each way of walking, and works at once.
      Work(faulty, false);
      ExpectSound(faulty, kSlotsOfADay);
    } catch (const Fault& fault) {
      throw Fault(std::string(trial.name) + " at request " + std::to_string(n) + ": " +
                  fault.what());
    }
  }
}

}  // namespace

void RunFaults(const Options& options) {
  constexpr FaultTrial kFaults[] = {
      {"the disk is full", BeFull, true},
      {"the disk is full for a moment", BeFull, false},
      {"an input/output error", HaveErrors, false},
      {"input/output errors from then on", HaveErrors, true},
      {"a file cannot be opened", OpenNothing, true},
  };
  for (const FaultTrial& trial : kFaults) {
    const int faults = TryAll(trial, options.folder, false) + TryAll(trial, options.folder, true);
    std::cout << faults << " times " << trial.name << std::endl;
  }
}

}  // namespace stress
