#include "stress/worker.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <iostream>
#include <optional>
#include <random>
#include <thread>
#include <utility>

#include "frame/attach.h"
#include "frame/exports.h"
#include "office/new_office.h"
#include "office/setup.h"
#include "stress/keeper.h"
#include "stress/store.h"
#include "testkit/process.h"

namespace stress {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kLongestStay = 60s;

void Work(const Assignment& assignment);

// The library finds the office by a registry of this process's own.
class Installation {
 public:
  explicit Installation(const fs::path& folder) {
    testkit::UsePrivateRegistry(folder);
    office::SetUp(OfficeIn(folder), office::Replacing::kAnything);
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
  const auto end = Clock::now() + std::chrono::milliseconds(assignment.milliseconds);
  while (Clock::now() < end) step();
}

// Makes the office that `slots` slots need; without slots, only the file for records.
void Prepare(const Assignment& assignment) {
  const fs::path office = OfficeIn(assignment.folder);
  fs::create_directories(office);
  if (assignment.slots != 0) {
    office::MakeGeneratedOffice(office, assignment.slots, [](auto, auto) {});
  }
  CreateRecords(office);
}

Store OpenStore(const Assignment& assignment) {
  return {OfficeIn(assignment.folder), assignment.slot};
}

// The keeper of a slot's records, or its successor.
Assignment KeeperOf(const fs::path& folder, int slot) { return {kRecords, folder, slot}; }

void KeepItems(const Assignment& assignment) {
  Store store = OpenStore(assignment);
  Keeper keeper(store, JournalOf(assignment));
  RepeatUntilTheEnd(assignment, [&] { keeper.Step(); });
}

void KeepAll(const Assignment& assignment) {
  std::deque<Store> stores;
  std::deque<Keeper> keepers;
  for (int slot = 0; slot < assignment.slots; ++slot) {
    const Assignment one = KeeperOf(assignment.folder, slot);
    stores.push_back(OpenStore(one));
    keepers.emplace_back(stores.back(), JournalOf(one));
  }
  std::size_t turn = 0;
  RepeatUntilTheEnd(assignment, [&] { keepers[turn++ % keepers.size()].Step(); });
}

// Whatever the process's end does to its calls, some may be refused.
template <class Action>
void EndWith(const Action& action) {
  try {
    action();
  } catch (const Refusal&) {  // as it may be: NOLINT(bugprone-empty-catch)
  } catch (const Fault&) {
    std::_Exit(kFound);
  }
}

// Calls once more when the process ends.
struct Farewell {
  explicit Farewell(Assignment its) : assignment(std::move(its)) {}
  Farewell(const Farewell&) = delete;
  Farewell& operator=(const Farewell&) = delete;
  ~Farewell() {
    EndWith([&] { OpenStore(assignment).Items(); });
  }
  Assignment assignment;
};

void LeaveAtWork(const Assignment& assignment) {
  Assignment work = KeeperOf(assignment.folder, assignment.slot);
  static const Farewell farewell(work);
  work.milliseconds = kLongestStay.count();
  std::thread([work] { EndWith([&] { KeepItems(work); }); }).detach();
  std::this_thread::sleep_for(std::chrono::milliseconds(assignment.milliseconds));
}

void ForkAtWork(const Assignment& assignment) {
  const Assignment own = KeeperOf(assignment.folder, assignment.slot);
  Store store = OpenStore(own);
  Keeper keeper(store, JournalOf(own));
  keeper.Step();
  if (testkit::Fork().value_or(true)) {
    std::mt19937 random{std::random_device()()};
    Assignment childs = KeeperOf(assignment.folder, assignment.slot + 1);
    const unsigned most = 2U * static_cast<unsigned>(assignment.milliseconds);
    childs.milliseconds = static_cast<int>(random() % most);
    Work(childs);
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

// The first case of a generated office.
constexpr const char* kCaseNumber = "10000001";

void TakeNumbers(const Assignment& assignment) {
  Journal journal(JournalOf(assignment));
  RepeatUntilTheEnd(assignment, [&] {
    const std::int32_t number = qlx99::GetDokuNr(kCaseNumber);
    if (number < 1) throw Refusal("GetDokuNr", number);
    journal.Write(std::string(kDone) + ' ' + std::to_string(number));
  });
}

// Each look ends at the beginning of the next walk.
void Read(const Assignment& assignment) {
  std::deque<Onlooker> onlookers;
  for (int slot = 0; slot < assignment.slots; ++slot) {
    const Assignment keeper = KeeperOf(assignment.folder, slot);
    onlookers.emplace_back(OpenStore(keeper), JournalOf(keeper));
  }
  Journal journal(JournalOf(assignment));
  std::mt19937 random{std::random_device()()};
  RepeatUntilTheEnd(assignment, [&] {
    onlookers[random() % onlookers.size()].Look();
    journal.Write(kDone);
    if (assignment.task != kPause) return;
    const auto most = static_cast<unsigned>(assignment.milliseconds);
    std::this_thread::sleep_for(std::chrono::milliseconds(random() % most));
  });
}

void Work(const Assignment& assignment) {
  struct Task {
    const char* name;
    void (*work)(const Assignment&);
    bool usesLibrary = false;
  };
  constexpr Task kTasks[] = {{kPrepare, Prepare},   {kNumbers, TakeNumbers, true},
                             {kRecords, KeepItems}, {kAllRecords, KeepAll},
                             {kTry, KeepAll},       {kRead, Read},
                             {kPause, Read},        {kLeave, LeaveAtWork},
                             {kFork, ForkAtWork},   {kCreate, RaceToCreate}};
  const Task& task = *std::ranges::find(kTasks, assignment.task, &Task::name);
  std::optional<Installation> installation;
  if (task.usesLibrary) installation.emplace(assignment.folder);
  task.work(assignment);
  const std::ofstream mark(EndMarkOf(assignment));
  if (assignment.stays) std::this_thread::sleep_for(kLongestStay);
}

}  // namespace

testkit::Process Start(const Assignment& assignment) {
  return testkit::Process({kWorker, assignment.task, assignment.folder.string(),
                           std::to_string(assignment.slot), std::to_string(assignment.slots),
                           std::to_string(assignment.milliseconds),
                           std::to_string(static_cast<int>(assignment.stays))});
}

int WorkAs(const std::vector<std::string>& commandLine) {
  const auto text = [&](std::size_t i) { return commandLine.at(i); };
  const Assignment assignment{
      text(2), text(3), std::stoi(text(4)), std::stoi(text(5)), std::stoi(text(6)), text(7) == "1"};
  try {
    Work(assignment);
    return 0;
  } catch (const Fault& fault) {
    if (assignment.task != kTry) std::cerr << assignment.task << ": " << fault.what() << std::endl;
    return dynamic_cast<const Refusal*>(&fault) != nullptr ? kRefused : kFound;
  }
}

fs::path OfficeIn(const fs::path& folder) { return folder / "office"; }

fs::path JournalOf(const Assignment& assignment) {
  return assignment.folder / (assignment.task + '-' + std::to_string(assignment.slot) + ".journal");
}

fs::path EndMarkOf(const Assignment& assignment) {
  return JournalOf(assignment).replace_extension("ended");
}

fs::path RaceIn(const fs::path& folder, int race) {
  return folder / ("race-" + std::to_string(race));
}

}  // namespace stress
