// `qlx_stress restore`, `leave`, `pause`, `create` and `fork`: rounds around one record file.
#include <algorithm>
#include <chrono>
#include <deque>
#include <fstream>
#include <random>
#include <thread>

#include "stress/store.h"
#include "stress/trials.h"
#include "stress/worker.h"

namespace stress {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testkit::Process;

constexpr seconds kLongestWait{20};

// A record file of its own, and those who work on it.
class Round {
 public:
  Round(fs::path folder, Findings& findings) : folder_(std::move(folder)), findings_(findings) {
    fs::create_directories(folder_);
    Run({kPrepare, folder_, 0, 0});
  }

  const fs::path& Folder() const { return folder_; }
  fs::path File() const { return OfficeIn(folder_) / kRecordsFile; }
  unsigned Chance(unsigned outcomes) { return static_cast<unsigned>(random_()) % outcomes; }
  void Note(const std::string& what) { findings_.Note(folder_.string() + ": " + what); }

  Assignment Give(const char* task, int slot, int time, bool stays = false) const {
    return {task, folder_, slot, kSlots, time, stays};
  }
  void End(Process& process) { findings_.NoteEnd(process.WaitAtMost(kLongestWait)); }
  void Run(const Assignment& assignment) {
    Process process = Start(assignment);
    End(process);
  }
  // Its exit code.
  int Try() const { return Start(Give(kTry, 0, 0)).WaitAtMost(kLongestWait); }

  template <class Condition>
  void WaitUntil(const char* what, const Condition& holds) {
    const auto latest = Clock::now() + kLongestWait;
    for (; Clock::now() < latest; std::this_thread::sleep_for(milliseconds(2))) {
      if (holds()) return;
    }
    Note(std::string("never: ") + what);
  }

  // Whether the keepers of a folder's slots find what they know of, and the file is sound.
  void ExpectSound(const fs::path& folder) {
    Run({kAllRecords, folder, 0, kSlots});
    findings_.Try("the end", [&] { ExpectUndamaged(OfficeIn(folder) / kRecordsFile); });
  }

 private:
  static constexpr int kSlots = 24;

  fs::path folder_;
  Findings& findings_;
  std::mt19937 random_{std::random_device()()};
};

void Sleep(unsigned time) { std::this_thread::sleep_for(milliseconds(time)); }

bool HasEnded(const Assignment& assignment) { return fs::exists(EndMarkOf(assignment)); }

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
void WorkALittle(Round& round) {
  round.Run(round.Give(kAllRecords, 0, 20 + static_cast<int>(round.Chance(100))));
}

// Is killed after some steps.
void WorkAndDie(Round& round) {
  const fs::path journal = JournalOf(round.Give(kRecords, 0, 0));
  const auto before = fs::file_size(journal);
  Process worker = Start(round.Give(kAllRecords, 0, 10'000));
  round.WaitUntil("the first step", [&] { return fs::file_size(journal) != before; });
  Sleep(round.Chance(40));
  worker.Kill();
}

// A backup is put back beside what a killed program has left. What the next finds is all of the
// backup, all of what was there, or a refusal until the logs have been removed.
void Restore(Round& round) {
  const fs::path backup = round.Folder() / "backup";
  if (round.Chance(2) == 0) UseRollbackJournal(round.File());
  WorkALittle(round);
  CopyFiles(OfficeIn(round.Folder()), OfficeIn(backup));
  CopyFiles(round.Folder(), backup);
  if (round.Chance(2) == 0) WorkALittle(round);
  WorkAndDie(round);
  if (round.Chance(4) == 0) RemoveLogs(round.File());
  CopyFiles(OfficeIn(backup), OfficeIn(round.Folder()));
  if (round.Try() == 0) return;
  CopyFiles(backup, round.Folder());  // what the keepers know
  const int end = round.Try();
  if (end == kRefused) RemoveLogs(round.File());
  if (end != 0 && end != kRefused) round.Note("a mixture");
}

// Hosts end while their threads are at work, beside others who go on or are killed.
void Leave(Round& round) {
  std::deque<Process> leaving;
  for (int slot = 0; slot < 3; ++slot) {
    leaving.push_back(Start(round.Give(kLeave, slot, static_cast<int>(round.Chance(100)))));
  }
  Process keeper = Start(round.Give(kRecords, 3, 100));
  Process killed = Start(round.Give(kRecords, 4, 10'000));
  for (Process& process : leaving) round.End(process);
  killed.Kill();
  round.End(keeper);
}

// Readers pause within walks while others write: the log stays small, and when all have closed the
// file, it is whole without its log at the next use.
void Pause(Round& round) {
  constexpr std::uintmax_t kLargestLog = 32 << 20;  // several times that of writers alone
  constexpr int kTime = 2000;
  const Assignment assignments[] = {
      round.Give(kRecords, 0, kTime, true), round.Give(kRecords, 1, kTime, true),
      round.Give(kPause, 2, kTime, true), round.Give(kPause, 3, kTime, true)};
  std::deque<Process> processes;
  for (const Assignment& assignment : assignments) processes.push_back(Start(assignment));
  std::uintmax_t largest = 0;
  round.WaitUntil("all close the file", [&] {
    std::error_code none;
    const auto size = fs::file_size(round.File().string() + "-wal", none);
    if (!none) largest = std::max(largest, size);
    return std::ranges::all_of(assignments, HasEnded);
  });
  if (largest > kLargestLog) round.Note("a log that nobody empties");
  round.Try();  // anybody's next use
  const fs::path copy = round.Folder() / "copy";
  CopyFiles(round.Folder(), copy);
  fs::create_directories(OfficeIn(copy));
  fs::copy_file(round.File(), OfficeIn(copy) / kRecordsFile);
  round.ExpectSound(copy);
}

// All would make the same file, and all write to it, whoever was first.
void Create(Round& round) {
  std::deque<Process> processes;
  for (int slot = 0; slot < 8; ++slot) {
    processes.push_back(Start(round.Give(kCreate, slot, 1)));
  }
  Sleep(100);
  for (int race = 0; race < kRaces; ++race, Sleep(5)) {
    fs::create_directories(OfficeIn(RaceIn(round.Folder(), race)));
  }
  for (Process& process : processes) round.End(process);
  round.Run(round.Give(kCreate, 0, 0));
}

// A process and its child both keep slots; either may end first.
void ForkOnce(Round& round) {
  const Assignment child = round.Give(kRecords, 1, 0);
  Process parent = Start(round.Give(kFork, 0, 20 + static_cast<int>(round.Chance(60))));
  if (round.Chance(2) == 0) round.Run(round.Give(kRecords, 2, 20));
  round.End(parent);
  round.WaitUntil("the child ends", [&] { return HasEnded(child); });
}

// Until the time is over. The folder of the first round that found something is left behind.
void Repeat(void (*run)(Round& round), const Options& options, Findings& findings) {
  const auto end = Clock::now() + seconds(options.seconds);
  int rounds = 0;
  for (; findings.Count() == 0 && Clock::now() < end; ++rounds) {
    Round round(options.folder / std::to_string(rounds), findings);
    run(round);
    round.ExpectSound(round.Folder());
    if (findings.Count() == 0) fs::remove_all(round.Folder());
  }
  std::cout << rounds << " rounds\n";
}

}  // namespace

void RunRestore(const Options& options, Findings& findings) { Repeat(Restore, options, findings); }
void RunLeave(const Options& options, Findings& findings) { Repeat(Leave, options, findings); }
void RunPause(const Options& options, Findings& findings) { Repeat(Pause, options, findings); }
void RunCreate(const Options& options, Findings& findings) { Repeat(Create, options, findings); }
void RunFork(const Options& options, Findings& findings) { Repeat(ForkOnce, options, findings); }

}  // namespace stress
