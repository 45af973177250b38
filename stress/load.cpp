// `qlx_stress load`: workstations of one office, killed at random.
#include <algorithm>
#include <chrono>
#include <iostream>
#include <map>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include "stress/slot.h"
#include "stress/trials.h"
#include "stress/worker.h"

namespace stress {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using testkit::Process;

constexpr const char* kTasks[] = {kNumbers, kRecords, kRead};

class Load {
 public:
  explicit Load(const Options& options) : options_(options) {
    const int kinds = std::size(kTasks);
    slots_ = (options.processes + kinds - 1) / kinds;
    for (int i = 0; i < options.processes; ++i) {
      const char* const task = kTasks[i % kinds];
      assignments_.push_back({task, options.folder, i / kinds, task == kRead ? slots_ : 1});
    }
  }

  void Run() {
    ExpectGood(Start({kPrepare, options_.folder, 0, slots_}).Wait());
    MakeRecordsIn(options_.folder);
    if (options_.rollbackJournal) ForEachFile(UseRollbackJournal);
    end_ = Clock::now() + std::chrono::seconds(options_.seconds);
    for (const Assignment& assignment : assignments_) processes_.push_back(StartAgain(assignment));
    while (Pause()) Strike();
    for (Process& process : processes_) ExpectGood(process.Wait());
    ExpectSound(options_.folder, slots_);
    CheckNumbers();
    ForEachFile(ExpectUndamaged);
    Report();
  }

 private:
  // For the time that is left.
  Process StartAgain(Assignment assignment) const {
    const auto left = std::chrono::duration_cast<milliseconds>(end_ - Clock::now());
    assignment.milliseconds = std::max(0, static_cast<int>(left.count()));
    return Start(assignment);
  }

  // False when the time is over.
  bool Pause() {
    const unsigned most = 2U * static_cast<unsigned>(options_.pause);
    std::this_thread::sleep_for(milliseconds(random_() % most));
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
      if (all || i == one) processes_[i] = StartAgain(assignments_[i]);
    }
  }

  void Kill(std::size_t i) {
    const int end = processes_[i].Kill();
    if (end == Process::kKilled) ++kills_[assignments_[i].task];
    if (end != Process::kKilled) ExpectGood(end);
  }

  // The acknowledged writes of all workers at a task, from their journals.
  std::vector<std::string> Acknowledged(const std::string& task) const {
    std::vector<std::string> all;
    for (int slot = 0; slot < slots_; ++slot) {
      std::streamoff begin = 0;
      for (const std::string& line : ReadJournal(JournalOf(options_.folder, task, slot), begin)) {
        if (line.starts_with(kDone)) all.push_back(line);
      }
    }
    return all;
  }

  // Every number was given once; those that nobody wrote down were given to workers who were killed
  // before they could.
  void CheckNumbers() {
    std::set<int> numbers;
    for (const std::string& line : Acknowledged(kNumbers)) {
      const std::string number = line.substr(std::string(kDone).size());
      if (!numbers.insert(std::stoi(number)).second) throw Fault(number + " was given twice");
    }
    if (numbers.empty()) return;
    const int missing = *numbers.rbegin() - static_cast<int>(numbers.size());
    if (missing > kills_[kNumbers]) throw Fault("numbers were left out");
  }

  template <class Action>
  void ForEachFile(const Action& action) const {
    for (const auto& entry : fs::directory_iterator(OfficeIn(options_.folder))) {
      if (entry.path().extension() == ".KRV") action(entry.path());
    }
  }

  void Report() {
    int kills = 0;
    for (const char* const task : kTasks) {
      kills += kills_[task];
      std::cout << task << ": " << Acknowledged(task).size() << " times\n";
    }
    std::cout << kills << " processes killed\n";
  }

  const Options& options_;
  int slots_ = 0;
  Clock::time_point end_;
  std::vector<Assignment> assignments_;
  std::vector<Process> processes_;
  std::map<std::string, int> kills_;  // by task
  std::mt19937 random_{std::random_device()()};
};

}  // namespace

void RunLoad(const Options& options) { Load(options).Run(); }

}  // namespace stress
