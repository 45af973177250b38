#include "stress/trials.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <fstream>
#include <ostream>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

#include "stress/journal.h"
#include "stress/soundness.h"
#include "stress/store.h"
#include "stress/tally.h"
#include "stress/worker.h"
#include "testkit/process.h"

namespace stress {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using testkit::Process;

// A record file of its own, and those who work on it.
class Round {
 public:
  Round(fs::path folder, Tally& tally, std::mt19937& random)
      : folder_(std::move(folder)), tally_(tally), random_(random) {
    fs::create_directories(folder_);
    if (Process({"--worker", "prepare", folder_.string(), "0"}).Wait() != 0) {
      throw std::runtime_error("no file could be made in " + folder_.string());
    }
  }

  static constexpr int kSlots = 24;

  const fs::path& Folder() const { return folder_; }
  fs::path File() const { return OfficeIn(folder_) / kRecordsFile; }
  unsigned Chance(unsigned outcomes) { return static_cast<unsigned>(random_()) % outcomes; }
  void Note(Fault::Kind kind) { tally_.Note(kind); }

  Assignment Give(const char* task, int slot, int time, bool stays = false) const {
    return {task, folder_, slot, kSlots, time, stays};
  }
  void End(Process& process) { tally_.NoteEnd(EndOf(process)); }
  void Run(const Assignment& assignment) {
    Process process(ArgumentsOf(assignment));
    End(process);
  }
  // Its exit code.
  int Try() const {
    Process process(ArgumentsOf(Give(kTry, 0, 0)));
    return EndOf(process);
  }

  // Whether the keepers of a folder's slots find what they know of, and the file is sound.
  void ExpectSound(const fs::path& folder) {
    Run({kAllRecords, folder, 0, kSlots});
    if (DamageOf(OfficeIn(folder) / kRecordsFile).empty()) return;
    tally_.Note(Fault::kDamaged);
  }

 private:
  static int EndOf(Process& process) { return process.WaitAtMost(std::chrono::seconds(20)); }

  fs::path folder_;
  Tally& tally_;
  std::mt19937& random_;
};

namespace {

void Sleep(unsigned time) { std::this_thread::sleep_for(milliseconds(time)); }

Process Start(const Assignment& assignment) { return Process(ArgumentsOf(assignment)); }

bool HasEnded(const Assignment& assignment) {
  const auto lines = ReadJournal(MeasuresOf(assignment));
  return !lines.empty() && lines.back() == kEnded;
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
void WorkALittle(Round& round) {
  round.Run(round.Give(kAllRecords, 0, 20 + static_cast<int>(round.Chance(100))));
}

// Is killed after some steps.
void WorkAndDie(Round& round) {
  const Assignment assignment = round.Give(kAllRecords, 0, 10'000);
  JournalReader measures(MeasuresOf(assignment));
  measures.NewLines();
  Process worker = Start(assignment);
  auto left = static_cast<int>(round.Chance(40));
  for (; left > 0; Sleep(1)) left -= static_cast<int>(measures.NewLines().size());
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
  if (end == Fault::kRefused) RemoveLogs(round.File());
  if (end != 0 && end != Fault::kRefused) round.Note(static_cast<Fault::Kind>(end));
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
  while (!std::ranges::all_of(assignments, HasEnded)) {
    std::error_code none;
    const auto size = fs::file_size(round.File().string() + "-wal", none);
    if (!none) largest = std::max(largest, size);
    Sleep(10);
  }
  if (largest > kLargestLog) round.Note(Fault::kGrown);
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
  const auto latest = Clock::now() + std::chrono::seconds(10);
  while (!HasEnded(child) && Clock::now() < latest) Sleep(5);
  if (!HasEnded(child)) round.Note(Fault::kCrashed);
}

}  // namespace

const std::vector<Trial> kTrials{
    {"restore", "Backups are put back beside what killed programs leave", Restore},
    {"leave", "Hosts end while their threads are at work", Leave},
    {"pause", "Readers pause within walks while others write", Pause},
    {"create", "Races to create a file", Create},
    {"fork", "Processes fork", ForkOnce}};

bool RunTrial(const Trial& trial, const fs::path& folder, int seconds, std::ostream& report) {
  const auto end = Clock::now() + std::chrono::seconds(seconds);
  std::mt19937 random{std::random_device()()};
  Tally tally;
  int rounds = 0;
  int sound = 0;
  for (; Clock::now() < end; ++rounds) {
    Tally found;
    Round round(folder / std::to_string(rounds), found, random);
    trial.run(round);
    round.ExpectSound(round.Folder());
    tally.Add(found);
    if (found.IsEmpty()) ++sound;
    if (found.IsEmpty() || rounds > sound) fs::remove_all(round.Folder());
  }
  report << trial.name << ": " << rounds << " rounds, " << rounds - sound
         << " of them with faults\n";
  tally.Write(report);
  if (tally.IsEmpty()) fs::remove_all(folder);
  return tally.IsEmpty();
}

}  // namespace stress
