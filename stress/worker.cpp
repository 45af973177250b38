#include "stress/worker.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <optional>
#include <random>
#include <thread>
#include <utility>

#include "frame/attach.h"
#include "frame/exports.h"
#include "office/new_office.h"
#include "office/setup.h"
#include "stress/journal.h"
#include "stress/keeper.h"
#include "stress/store.h"
#include "testkit/process.h"

namespace stress {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto kLongestStay = 60s;

// The library finds the office by a registry of this process's own.
class Installation {
 public:
  explicit Installation(const std::filesystem::path& folder) {
    testkit::UsePrivateRegistry(folder);
    office::SetUp(OfficeIn(folder));
    qlx99::AttachLibrary(GetModuleHandleA(nullptr));
  }
  ~Installation() {
    qlx99::DetachLibrary(qlx99::Detachment::kFreed);
    testkit::DropPrivateRegistry();
  }
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;
};

template <class Step>
void RepeatUntilTheEnd(const Assignment& assignment, const Step& step) {
  Journal measures(MeasuresOf(assignment));
  const auto end = Clock::now() + std::chrono::milliseconds(assignment.milliseconds);
  auto longest = Clock::duration::zero();
  for (auto begin = Clock::now(); begin < end; begin = Clock::now()) {
    step();
    if (const auto took = Clock::now() - begin; took > longest) {
      longest = took;
      const auto microseconds = std::chrono::ceil<std::chrono::microseconds>(took);
      measures.Write("longest " + std::to_string(microseconds.count()));
    }
    measures.Write("step");
  }
}

std::unique_ptr<Store> OpenStore(const std::string& task, const std::filesystem::path& folder,
                                 int slot) {
  return task == kFollowUps ? OpenFollowUps(slot) : OpenRecords(OfficeIn(folder), slot);
}

void KeepItems(const Assignment& assignment) {
  const auto store = OpenStore(assignment.task, assignment.folder, assignment.slot);
  Keeper keeper(*store, JournalOf(assignment));
  RepeatUntilTheEnd(assignment, [&] { keeper.Step(); });
}

void KeepAll(const Assignment& assignment) {
  std::vector<std::unique_ptr<Store>> stores;
  std::deque<Keeper> keepers;
  for (int slot = 0; slot < assignment.slots; ++slot) {
    stores.push_back(OpenStore(kRecords, assignment.folder, slot));
    keepers.emplace_back(*stores.back(), JournalOf({kRecords, assignment.folder, slot}));
  }
  std::size_t turn = 0;
  RepeatUntilTheEnd(assignment, [&] { keepers[turn++ % keepers.size()].Step(); });
}

void Try(const Assignment& assignment) {
  try {
    KeepAll(assignment);
  } catch (const Fault& fault) {
    std::exit(fault.kind);
  }
}

// Calls once more when the process ends, which may be refused.
class Farewell {
 public:
  explicit Farewell(Assignment assignment) : assignment_(std::move(assignment)) {}
  Farewell(const Farewell&) = delete;
  Farewell& operator=(const Farewell&) = delete;
  ~Farewell() {
    EndWith([&] { OpenStore(kRecords, assignment_.folder, assignment_.slot)->Items(); });
  }

  template <class Action>
  static void EndWith(const Action& action) {
    try {
      action();
    } catch (const Fault& fault) {
      if (fault.kind != Fault::kRefused) std::_Exit(fault.kind);
    }
  }

 private:
  Assignment assignment_;
};

void LeaveAtWork(const Assignment& assignment) {
  static const Farewell farewell(assignment);
  std::thread([assignment] {
    Assignment work{kRecords, assignment.folder, assignment.slot};
    work.milliseconds = std::chrono::milliseconds(kLongestStay).count();
    Farewell::EndWith([&] { KeepItems(work); });
  }).detach();
  std::this_thread::sleep_for(std::chrono::milliseconds(assignment.milliseconds));
}

void ForkAtWork(const Assignment& assignment) {
  const auto store = OpenStore(kRecords, assignment.folder, assignment.slot);
  Keeper keeper(*store, JournalOf({kRecords, assignment.folder, assignment.slot}));
  keeper.Step();
  if (testkit::Fork().value_or(true)) {
    std::mt19937 random{std::random_device()()};
    const unsigned most = 2U * static_cast<unsigned>(assignment.milliseconds);
    Work({kRecords, assignment.folder, assignment.slot + 1, assignment.slots,
          static_cast<int>(random() % most)});
    if (random() % 2 == 0) std::_Exit(0);
    return;
  }
  RepeatUntilTheEnd(assignment, [&] { keeper.Step(); });
}

void RaceToCreate(const Assignment& assignment) {
  for (int race = 0; race < kRaces; ++race) {
    const fs::path folder = RaceIn(assignment.folder, race);
    if (assignment.milliseconds == 0) {
      KeepAll({kAllRecords, folder, 0, assignment.slots});
      continue;
    }
    while (!fs::exists(OfficeIn(folder))) std::this_thread::sleep_for(100us);
    try {
      CreateRecords(OfficeIn(folder));
    } catch (const std::exception&) {  // another was first: NOLINT(bugprone-empty-catch)
    }
    KeepItems({kRecords, folder, assignment.slot, assignment.slots, 1});
  }
}

void TakeNumbers(const Assignment& assignment) {
  Journal journal(JournalOf(assignment));
  std::mt19937 random{std::random_device()()};
  RepeatUntilTheEnd(assignment, [&] {
    const std::string caseNumber =
        CaseNumberOf(static_cast<int>(random() % static_cast<unsigned>(assignment.slots)));
    const std::int32_t number = qlx99::GetDokuNr(caseNumber.c_str());
    if (number < 1) throw Fault(Fault::kRefused, "GetDokuNr gave " + std::to_string(number));
    journal.Write(caseNumber + ' ' + std::to_string(number));
  });
}

void Count(const Assignment& assignment) {
  Journal journal(JournalOf(assignment));
  RepeatUntilTheEnd(assignment, [&] {
    IncrementCounter(OfficeIn(assignment.folder));
    journal.Write(kDone);
  });
  journal.Write(kCounted + std::to_string(CounterValue(OfficeIn(assignment.folder))));
}

// Beside their keeper.
Onlooker LookAt(const Assignment& reader, const char* keepersTask, int slot) {
  return {OpenStore(keepersTask, reader.folder, slot),
          JournalOf({keepersTask, reader.folder, slot})};
}

// Each look ends at the beginning of the next walk.
void ReadWithPauses(const Assignment& assignment) {
  std::deque<Onlooker> onlookers;
  for (int slot = 0; slot < assignment.slots; ++slot) {
    onlookers.push_back(LookAt(assignment, kRecords, slot));
  }
  std::mt19937 random{std::random_device()()};
  RepeatUntilTheEnd(assignment, [&] {
    onlookers[random() % onlookers.size()].Look();
    const auto most = static_cast<unsigned>(assignment.milliseconds);
    std::this_thread::sleep_for(std::chrono::milliseconds(random() % most));
  });
}

void ReadAll(const Assignment& assignment) {
  std::deque<Onlooker> onlookers;
  for (int slot = 0; slot < assignment.slots; ++slot) {
    for (const char* task : {kFollowUps, kRecords})
      onlookers.push_back(LookAt(assignment, task, slot));
  }
  std::size_t turn = 0;
  RepeatUntilTheEnd(assignment, [&] { onlookers[turn++ % onlookers.size()].Look(); });
}

}  // namespace

std::vector<std::string> ArgumentsOf(const Assignment& assignment) {
  return {"--worker",
          assignment.task,
          assignment.folder.string(),
          std::to_string(assignment.slot),
          std::to_string(assignment.slots),
          std::to_string(assignment.milliseconds),
          std::to_string(static_cast<int>(assignment.stays))};
}

Assignment AssignmentOf(const std::vector<std::string>& arguments) {
  return {arguments.at(0),
          arguments.at(1),
          std::stoi(arguments.at(2)),
          std::stoi(arguments.at(3)),
          std::stoi(arguments.at(4)),
          arguments.at(5) == "1"};
}

std::filesystem::path OfficeIn(const std::filesystem::path& folder) { return folder / "office"; }

std::filesystem::path JournalOf(const Assignment& assignment) {
  return assignment.folder / (assignment.task + '-' + std::to_string(assignment.slot) + ".journal");
}

std::filesystem::path MeasuresOf(const Assignment& assignment) {
  return JournalOf(assignment).replace_extension("measures");
}

void Prepare(const std::filesystem::path& folder, int slots) {
  fs::create_directories(OfficeIn(folder));
  if (slots != 0) {
    office::MakeGeneratedOffice(OfficeIn(folder), slots, [](std::int32_t, std::int32_t) {});
  }
  CreateRecords(OfficeIn(folder));
  StartCounter(OfficeIn(folder));
}

fs::path RaceIn(const fs::path& folder, int race) {
  return folder / ("race-" + std::to_string(race));
}

void Work(const Assignment& assignment) {
  struct Task {
    const char* name;
    void (*work)(const Assignment&);
    bool usesLibrary = false;
  };
  constexpr Task kTasks[] = {{kNumbers, TakeNumbers, true},
                             {kFollowUps, KeepItems, true},
                             {kRecords, KeepItems},
                             {kCount, Count},
                             {kRead, ReadAll, true},
                             {kAllRecords, KeepAll},
                             {kTry, Try},
                             {kPause, ReadWithPauses},
                             {kLeave, LeaveAtWork},
                             {kFork, ForkAtWork},
                             {kCreate, RaceToCreate}};
  const Task& task = *std::ranges::find(kTasks, assignment.task, &Task::name);
  std::optional<Installation> installation;
  if (task.usesLibrary) installation.emplace(assignment.folder);
  task.work(assignment);
  Journal(MeasuresOf(assignment)).Write(kEnded);
  if (assignment.stays) std::this_thread::sleep_for(kLongestStay);
}

}  // namespace stress
