#include "stress/worker.h"

#include <chrono>
#include <cstdlib>
#include <deque>
#include <map>
#include <random>
#include <thread>

#include "frame/attach.h"
#include "frame/exports.h"
#include "office/new_office.h"
#include "office/setup.h"
#include "stress/slot.h"
#include "testkit/embedded_manager.h"

namespace stress {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kLongestStay = 60s;

void Work(const Assignment& its);

btrieve::EntryPoint Installed() { return btrieve::EntryPointOf(testkit::EmbeddedCall()); }

template <class Step>
void RepeatUntilTheEnd(const Assignment& its, const Step& step) {
  const auto end = Clock::now() + std::chrono::milliseconds(its.milliseconds);
  while (Clock::now() < end) step();
}

void KeepRecords(const Assignment& its) {
  std::deque<Slot> slots;
  for (int i = 0; i < its.slots; ++i) {
    slots.emplace_back(its.folder, its.slot + i, Installed()).Check();
  }
  std::size_t turn = 0;
  RepeatUntilTheEnd(its, [&] { slots[turn++ % slots.size()].Step(); });
}

// Whatever the process's end does to its calls, some may be refused.
template <class Action>
void EndWith(const Action& action) {
  try {
    action();
  } catch (const Refusal&) {  // as it may be: NOLINT(bugprone-empty-catch)
  } catch (const Fault&) {
    std::_Exit(1);
  }
}

// Calls once more when the process ends.
struct Farewell {
  explicit Farewell(const Assignment& its) : file(RecordsIn(its.folder)), slot(its.slot) {}
  Farewell(const Farewell&) = delete;
  Farewell& operator=(const Farewell&) = delete;
  ~Farewell() {
    EndWith([&] { Store(file, slot, Installed()).Items(); });
  }
  fs::path file;
  int slot;
};

void LeaveAtWork(const Assignment& its) {
  static const Farewell farewell(its);
  Assignment work = its;
  work.milliseconds = kLongestStay.count();
  std::thread([work] { EndWith([&] { KeepRecords(work); }); }).detach();
  std::this_thread::sleep_for(std::chrono::milliseconds(its.milliseconds));
}

void ForkAtWork(const Assignment& its) {
  Slot slot(its.folder, its.slot, Installed());
  slot.Check();
  slot.Step();
  if (testkit::Fork().value_or(true)) {
    std::mt19937 random{std::random_device()()};
    const unsigned most = 2U * static_cast<unsigned>(its.milliseconds);
    const auto time = random() % most;
    Work({kRecords, its.folder, its.slot + 1, 1, static_cast<int>(time)});
    if (random() % 2 == 0) std::_Exit(0);
    return;
  }
  RepeatUntilTheEnd(its, [&] { slot.Step(); });
}

void RaceToCreate(const Assignment& its) {
  for (int race = 0; race < kRaces; ++race) {
    const fs::path folder = RaceIn(its.folder, race);
    while (!fs::exists(OfficeIn(folder))) std::this_thread::sleep_for(100us);
    try {
      CreateRecords(RecordsIn(folder), Installed());
    } catch (const Refusal&) {  // another was first: NOLINT(bugprone-empty-catch)
    }
    KeepRecords({kRecords, folder, its.slot, 1, 1});
  }
}

// In a process of its own, as its record manager keeps files open for a while.
void Prepare(const Assignment& its) {
  office::MakeGeneratedOffice(OfficeIn(its.folder), its.slots, [](auto, auto) {});
}

// The library finds the office by a registry of this process's own.
void TakeNumbers(const Assignment& its) {
  constexpr const char* kCaseNumber = "10000001";  // the first of a generated office
  testkit::UsePrivateRegistry(its.folder);
  office::SetUp(OfficeIn(its.folder), office::Replacing::kAnything);
  qlx99::AttachLibrary(GetModuleHandleA(nullptr));
  Journal journal(JournalOf(its.folder, kNumbers, its.slot));
  RepeatUntilTheEnd(its, [&] {
    const std::int32_t number = qlx99::GetDokuNr(kCaseNumber);
    if (number < 1) throw Refusal("GetDokuNr", number);
    journal.Write(std::string(kDone) + ' ' + std::to_string(number));
  });
  qlx99::DetachLibrary(qlx99::Detachment::kFreed);
  testkit::DropPrivateRegistry();
}

// Each look ends at the beginning of the next walk.
void Read(const Assignment& its) {
  std::deque<Slot> slots;
  for (int slot = 0; slot < its.slots; ++slot) {
    slots.emplace_back(its.folder, slot, Installed());
  }
  Journal journal(JournalOf(its.folder, kRead, its.slot));
  std::mt19937 random{std::random_device()()};
  RepeatUntilTheEnd(its, [&] {
    slots[random() % slots.size()].Look();
    journal.Write(kDone);
    if (!its.stays) return;
    const auto most = static_cast<unsigned>(its.milliseconds);
    std::this_thread::sleep_for(std::chrono::milliseconds(random() % most));
  });
}

void Work(const Assignment& its) {
  static const std::map<std::string, void (*)(const Assignment&)> tasks{
      {kPrepare, Prepare},   {kNumbers, TakeNumbers}, {kRecords, KeepRecords}, {kRead, Read},
      {kLeave, LeaveAtWork}, {kFork, ForkAtWork},     {kCreate, RaceToCreate}};
  tasks.at(its.task)(its);
  const std::ofstream mark(EndMarkOf(its));
  if (its.stays) std::this_thread::sleep_for(kLongestStay);
}

}  // namespace

testkit::Process Start(const Assignment& its) {
  return testkit::Process({kWorker, its.task, its.folder.string(), std::to_string(its.slot),
                           std::to_string(its.slots), std::to_string(its.milliseconds),
                           std::to_string(static_cast<int>(its.stays))});
}

void WorkAs(const std::vector<std::string>& commandLine) {
  const auto text = [&](std::size_t i) { return commandLine.at(i); };
  Work({text(2), text(3), std::stoi(text(4)), std::stoi(text(5)), std::stoi(text(6)),
        text(7) == "1"});
}

void ExpectGood(int exitCode) {
  if (exitCode != 0) throw Fault("a process ended with " + std::to_string(exitCode));
}

fs::path EndMarkOf(const Assignment& its) {
  return JournalOf(its.folder, its.task, its.slot).replace_extension("ended");
}

fs::path RaceIn(const fs::path& folder, int race) {
  return folder / ("race-" + std::to_string(race));
}

}  // namespace stress
