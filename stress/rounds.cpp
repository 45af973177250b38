// `qlx_stress restore`, `leave`, `pause`, `create` and `fork`: rounds around one record file.
#include <algorithm>
#include <chrono>
#include <deque>
#include <fstream>
#include <iostream>
#include <random>
#include <thread>

#include "stress/slot.h"
#include "stress/trials.h"
#include "stress/worker.h"

namespace stress {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testkit::Process;

constexpr int kSlots = 24;
constexpr seconds kLongestWait{20};

int Chance(int outcomes) {
  static std::mt19937 random{std::random_device()()};
  return static_cast<int>(random() % static_cast<unsigned>(outcomes));
}

void Sleep(int time) { std::this_thread::sleep_for(milliseconds(time)); }

void End(Process& process) { ExpectGood(process.Wait(kLongestWait)); }

void Run(const Assignment& assignment) {
  Process process = Start(assignment);
  End(process);
}

template <class Condition>
void WaitUntil(const char* what, const Condition& holds) {
  const auto latest = Clock::now() + kLongestWait;
  for (; !holds(); Sleep(2)) {
    if (Clock::now() > latest) throw Fault(std::string("never: ") + what);
  }
}

void CopyFiles(const fs::path& from, const fs::path& to) {
  fs::create_directories(to);
  for (const auto& entry : fs::directory_iterator(from)) {
    if (!entry.is_regular_file()) continue;
    std::ofstream(to / entry.path().filename(), std::ios::binary)
        << std::ifstream(entry.path(), std::ios::binary).rdbuf();
  }
}

void RemoveLogs(const fs::path& file) {
  for (const char* suffix : {"-wal", "-shm", "-journal"}) fs::remove(file.string() + suffix);
}

// Works on all slots for a moment.
void WorkALittle(const fs::path& folder) { Run({kRecords, folder, 0, kSlots, 20 + Chance(100)}); }

// Is killed after some steps.
void WorkAndDie(const fs::path& folder) {
  const fs::path journal = JournalOf(folder, kRecords, 0);
  const auto before = fs::file_size(journal);
  Process worker = Start({kRecords, folder, 0, kSlots, 10'000});
  WaitUntil("the first step", [&] { return fs::file_size(journal) != before; });
  Sleep(Chance(40));
  worker.Kill();
}

// A backup is put back beside what a killed program has left. What the next finds is all of the
// backup, all of what was there, or a refusal until the logs have been removed.
void Restore(const fs::path& folder) {
  const fs::path backup = folder / "backup";
  if (Chance(2) == 0) UseRollbackJournal(RecordsIn(folder));
  WorkALittle(folder);
  CopyFiles(OfficeIn(folder), OfficeIn(backup));
  CopyFiles(folder, backup);
  if (Chance(2) == 0) WorkALittle(folder);
  WorkAndDie(folder);
  if (Chance(4) == 0) RemoveLogs(RecordsIn(folder));
  CopyFiles(OfficeIn(backup), OfficeIn(folder));
  try {
    return ExpectSound(folder, kSlots);
  } catch (const Fault&) {
    CopyFiles(backup, folder);  // what the keepers know
  }
  try {
    ExpectSound(folder, kSlots);
  } catch (const Refusal&) {
    RemoveLogs(RecordsIn(folder));
  }
}

// Hosts end while their threads are at work, beside others who go on or are killed.
void Leave(const fs::path& folder) {
  std::deque<Process> leaving;
  for (int slot = 0; slot < 3; ++slot) {
    leaving.push_back(Start({kLeave, folder, slot, 1, Chance(100)}));
  }
  Process keeper = Start({kRecords, folder, 3, 1, 100});
  Process killed = Start({kRecords, folder, 4, 1, 10'000});
  for (Process& process : leaving) End(process);
  killed.Kill();
  End(keeper);
}

// Readers pause within walks while others write: the log stays small, and when all have closed the
// file, it is whole without its log at the next use.
void Pause(const fs::path& folder) {
  constexpr std::uintmax_t kLargestLog = 32 << 20;  // several times that of writers alone
  std::deque<Assignment> assignments;
  std::deque<Process> processes;
  for (int i = 0; i < 4; ++i) {
    assignments.push_back({i < 2 ? kRecords : kRead, folder, i, i < 2 ? 1 : kSlots, 2000, true});
    processes.push_back(Start(assignments.back()));
  }
  std::uintmax_t largest = 0;
  WaitUntil("all close the file", [&] {
    std::error_code none;
    const auto size = fs::file_size(RecordsIn(folder).string() + "-wal", none);
    if (!none) largest = std::max(largest, size);
    return std::ranges::all_of(assignments, [](const auto& its) { return exists(EndMarkOf(its)); });
  });
  if (largest > kLargestLog) throw Fault("a log that nobody empties");
  ExpectSound(folder, kSlots);  // anybody's next use
  const fs::path copy = folder / "copy";
  CopyFiles(folder, copy);
  fs::create_directories(OfficeIn(copy));
  fs::copy_file(RecordsIn(folder), RecordsIn(copy));
  ExpectSound(copy, kSlots);
}

// All would make the same file, and all write to it, whoever was first.
void Create(const fs::path& folder) {
  constexpr int kRacers = 8;
  std::deque<Process> processes;
  for (int slot = 0; slot < kRacers; ++slot) processes.push_back(Start({kCreate, folder, slot}));
  Sleep(100);
  for (int race = 0; race < kRaces; ++race, Sleep(5)) {
    fs::create_directories(OfficeIn(RaceIn(folder, race)));
  }
  for (Process& process : processes) End(process);
  for (int race = 0; race < kRaces; ++race) ExpectSound(RaceIn(folder, race), kRacers);
}

// A process and its child both keep slots; either may end first.
void ForkOnce(const fs::path& folder) {
  Process parent = Start({kFork, folder, 0, 1, 20 + Chance(60)});
  if (Chance(2) == 0) Run({kRecords, folder, 2, 1, 20});
  End(parent);
  WaitUntil("the child ends", [&] { return exists(EndMarkOf({kRecords, folder, 1})); });
}

// Until the time is over. The folder of the round that found something is left behind.
void Repeat(void (*run)(const fs::path& folder), const Options& options) {
  const auto end = Clock::now() + seconds(options.seconds);
  int rounds = 0;
  for (; Clock::now() < end; ++rounds) {
    const fs::path folder = options.folder / std::to_string(rounds);
    MakeRecordsIn(folder);
    run(folder);
    ExpectSound(folder, kSlots);
    WaitUntil("the folder goes", [&] {  // a forked child marks its end before it leaves
      std::error_code busy;
      return fs::remove_all(folder, busy), !fs::exists(folder);
    });
  }
  std::cout << rounds << " rounds\n";
}

}  // namespace

void RunRestore(const Options& options) { Repeat(Restore, options); }
void RunLeave(const Options& options) { Repeat(Leave, options); }
void RunPause(const Options& options) { Repeat(Pause, options); }
void RunCreate(const Options& options) { Repeat(Create, options); }
void RunFork(const Options& options) { Repeat(ForkOnce, options); }

}  // namespace stress
