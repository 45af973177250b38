#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <map>
#include <ostream>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "stress/journal.h"
#include "stress/soundness.h"
#include "stress/store.h"
#include "stress/tally.h"
#include "stress/trials.h"
#include "stress/worker.h"
#include "testkit/process.h"

namespace stress {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using testkit::Process;

// What was done, and what should not have happened.
struct Findings {
  std::map<std::string, int> done;     // by task: acknowledged writes, or looks at a slot
  std::map<std::string, int> kills;    // by task
  std::map<std::string, int> longest;  // by task: the longest step in microseconds
  Tally tally;
  int files = 0;
};

class Load {
 public:
  explicit Load(const Plan& plan) : plan_(plan), end_(Clock::now()) {
    constexpr const char* kTasks[] = {kFollowUps, kRecords, kNumbers, kCount, kRead};
    const int slots = std::max(1, (plan.processes + 4) / 5);
    for (int i = 0; i < plan.processes; ++i) {
      assignments_.push_back({kTasks[i % 5], plan.folder, i / 5, slots});
    }
  }

  Findings Run() {
    Make();
    end_ = Clock::now() + std::chrono::seconds(plan_.seconds);
    for (const Assignment& assignment : assignments_) processes_.push_back(Start(assignment));
    while (plan_.pause != 0 && Pause()) Strike();
    for (auto& process : processes_) findings_.tally.NoteEnd(process.Wait());
    CheckItems();
    CheckNumbers();
    CheckCounter();
    CheckFiles();
    TakeMeasures();
    return findings_;
  }

 private:
  void Make() {
    fs::create_directories(plan_.folder);
    const std::string slots = std::to_string(assignments_.front().slots);
    if (Process({"--worker", "prepare", plan_.folder.string(), slots}).Wait() != 0) {
      throw std::runtime_error("no office could be made in " + plan_.folder.string());
    }
    if (!plan_.rollbackJournal) return;
    ForEachFile([](const fs::path& file) { UseRollbackJournal(file); });
  }

  Process Start(Assignment assignment) const {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end_ - Clock::now());
    assignment.milliseconds = std::max(0, static_cast<int>(left.count()));
    return Process(ArgumentsOf(assignment));
  }

  // False when the time is over.
  bool Pause() {
    const unsigned most = 2U * static_cast<unsigned>(plan_.pause);
    std::this_thread::sleep_for(std::chrono::milliseconds(random_() % most));
    return Clock::now() < end_;
  }

  // Kills one worker or, as a loss of power would, all; others take their places.
  void Strike() {
    constexpr unsigned kAllEvery = 8;
    const std::size_t one = random_() % processes_.size();
    const bool all = random_() % kAllEvery == 0;
    for (std::size_t i = 0; i < processes_.size(); ++i) {
      if (all || i == one) Kill(i);
    }
    for (std::size_t i = 0; i < processes_.size(); ++i) {
      if (all || i == one) processes_[i] = Start(assignments_[i]);
    }
  }

  void Kill(std::size_t i) {
    const int end = processes_[i].Kill();
    if (end == Process::kKilled) ++findings_.kills[assignments_[i].task];
    if (end != Process::kKilled) findings_.tally.NoteEnd(end);
  }

  // Each keeper finds what those before it were promised.
  void CheckItems() {
    for (const Assignment& assignment : assignments_) {
      if (assignment.task != kFollowUps && assignment.task != kRecords) continue;
      findings_.tally.NoteEnd(Process(ArgumentsOf(assignment)).Wait());
      findings_.done[assignment.task] += CountDone(assignment);
    }
  }

  static int CountDone(const Assignment& assignment) {
    const auto lines = ReadJournal(JournalOf(assignment));
    return static_cast<int>(std::ranges::count(lines, kDone));
  }

  // Of each case every number was given once; those that nobody wrote down were given to workers
  // who were killed before they could.
  void CheckNumbers() {
    std::map<std::string, std::set<int>> numbers;
    for (const Assignment& assignment : assignments_) {
      if (assignment.task != kNumbers) continue;
      for (const std::string& line : ReadJournal(JournalOf(assignment))) {
        std::istringstream words(line);
        std::string caseNumber;
        int number = 0;
        words >> caseNumber >> number;
        ++findings_.done[kNumbers];
        if (!numbers[caseNumber].insert(number).second) findings_.tally.Note(Fault::kDoubled, 1);
      }
    }
    int missing = 0;
    for (const auto& [caseNumber, given] : numbers) {
      missing += *given.rbegin() - static_cast<int>(given.size());
    }
    findings_.tally.Note(Fault::kLost, missing - findings_.kills[kNumbers]);
  }

  void CheckCounter() {
    int value = 0;
    for (const Assignment& assignment : assignments_) {
      if (assignment.task != kCount) continue;
      findings_.done[kCount] += CountDone(assignment);
      findings_.tally.NoteEnd(Process(ArgumentsOf(assignment)).Wait());
      const std::string last = ReadJournal(JournalOf(assignment)).back();
      if (last.starts_with(kCounted)) value = std::stoi(last.substr(std::strlen(kCounted)));
    }
    const int beyond = value - findings_.done[kCount];
    findings_.tally.Note(Fault::kLost, -beyond);
    findings_.tally.Note(Fault::kDoubled, beyond - findings_.kills[kCount]);
  }

  template <class Action>
  void ForEachFile(const Action& action) const {
    for (const auto& entry : fs::directory_iterator(OfficeIn(plan_.folder))) {
      if (entry.path().extension() == ".KRV") action(entry.path());
    }
  }

  void CheckFiles() {
    ForEachFile([&](const fs::path& file) {
      ++findings_.files;
      const std::string damage = DamageOf(file);
      if (damage.empty()) return;
      findings_.tally.Note(Fault::kDamaged, 1);
      std::fprintf(stderr, "%s: %s\n", file.string().c_str(), damage.c_str());
    });
  }

  void TakeMeasures() {
    for (const Assignment& assignment : assignments_) {
      for (const std::string& line : ReadJournal(MeasuresOf(assignment))) {
        std::istringstream words(line);
        std::string what;
        int value = 0;
        words >> what >> value;
        int& longest = findings_.longest[assignment.task];
        if (what == "longest") longest = std::max(longest, value);
        if (what == "step" && assignment.task == kRead) ++findings_.done[kRead];
      }
    }
  }

  Plan plan_;
  Clock::time_point end_;
  std::vector<Assignment> assignments_;
  std::vector<Process> processes_;
  std::mt19937 random_{std::random_device()()};
  Findings findings_;
};

// A line for each task, and one with what should all be 0.
void Write(const Findings& findings, std::ostream& report) {
  constexpr std::pair<const char*, const char*> kTasks[] = {
      {kNumbers, "document numbers taken"},
      {kFollowUps, "follow-ups written, changed or deleted"},
      {kRecords, "records written, changed or deleted"},
      {kCount, "increments of one counter"},
      {kRead, "times all items of a slot read"}};
  const auto at = [](const auto& map, const auto& key) {
    const auto found = map.find(key);
    return found == map.end() ? 0 : found->second;
  };
  int kills = 0;
  for (const auto& [task, words] : kTasks) {
    kills += at(findings.kills, task);
    report << at(findings.done, task) << ' ' << words << ", the longest in "
           << at(findings.longest, task) / 1000 << " ms\n";
  }
  report << kills << " processes killed, " << findings.files << " files checked\n";
  findings.tally.Write(report);
}

}  // namespace

bool RunLoad(const Plan& plan, std::ostream& report) {
  const Findings findings = Load(plan).Run();
  Write(findings, report);
  const bool sound = findings.tally.IsEmpty();
  if (sound) fs::remove_all(plan.folder);
  return sound;
}

}  // namespace stress
