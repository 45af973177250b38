#include "stress/worker.h"

#include <algorithm>
#include <chrono>
#include <random>

#include "frame/attach.h"
#include "frame/exports.h"
#include "office/new_office.h"
#include "office/setup.h"
#include "stress/host.h"
#include "stress/journal.h"
#include "stress/keeper.h"
#include "stress/store.h"

namespace stress {
namespace {

using Clock = std::chrono::steady_clock;

// The library finds the office by a registry of this process's own.
class Installation {
 public:
  explicit Installation(const std::filesystem::path& folder) {
    UsePrivateRegistry(folder);
    office::SetUp(OfficeIn(folder));
    qlx99::AttachLibrary(GetModuleHandleA(nullptr));
  }
  ~Installation() {
    qlx99::DetachLibrary();
    DropPrivateRegistry();
  }
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;
};

template <class Step>
void RepeatUntilTheEnd(const Assignment& assignment, const Step& step) {
  constexpr int kStepsPerLine = 10;
  Journal measures(MeasuresOf(assignment));
  const auto end = Clock::now() + std::chrono::milliseconds(assignment.milliseconds);
  auto longest = Clock::duration::zero();
  int steps = 0;
  for (auto begin = Clock::now(); begin < end; begin = Clock::now()) {
    step();
    if (const auto took = Clock::now() - begin; took > longest) {
      longest = took;
      const auto microseconds = std::chrono::ceil<std::chrono::microseconds>(took);
      measures.Write("longest " + std::to_string(microseconds.count()));
    }
    if (++steps % kStepsPerLine == 0) measures.Write("steps " + std::to_string(kStepsPerLine));
  }
}

void KeepItems(const Assignment& assignment, Store& store) {
  Keeper keeper(store, JournalOf(assignment));
  RepeatUntilTheEnd(assignment, [&] { keeper.Step(); });
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

void ReadAll(const Assignment& assignment) {
  int turn = 0;
  RepeatUntilTheEnd(assignment, [&] {
    const int slot = ++turn / 2 % assignment.slots;
    const auto store =
        turn % 2 == 0 ? OpenFollowUps(slot) : OpenRecords(OfficeIn(assignment.folder), slot);
    store->Items();
  });
}

}  // namespace

std::vector<std::string> ArgumentsOf(const Assignment& assignment) {
  return {"--worker",
          assignment.task,
          assignment.folder.string(),
          std::to_string(assignment.slot),
          std::to_string(assignment.slots),
          std::to_string(assignment.milliseconds)};
}

Assignment AssignmentOf(const std::vector<std::string>& arguments) {
  return {arguments.at(0), arguments.at(1), std::stoi(arguments.at(2)), std::stoi(arguments.at(3)),
          std::stoi(arguments.at(4))};
}

std::filesystem::path OfficeIn(const std::filesystem::path& folder) { return folder / "office"; }

std::filesystem::path JournalOf(const Assignment& assignment) {
  return assignment.folder / (assignment.task + '-' + std::to_string(assignment.slot) + ".journal");
}

std::filesystem::path MeasuresOf(const Assignment& assignment) {
  return JournalOf(assignment).replace_extension("measures");
}

void Prepare(const std::filesystem::path& folder, int slots) {
  office::MakeGeneratedOffice(OfficeIn(folder), slots, [](std::int32_t, std::int32_t) {});
  CreateRecords(OfficeIn(folder));
}

void Work(const Assignment& assignment) {
  const Installation installation(assignment.folder);
  if (assignment.task == kNumbers) return TakeNumbers(assignment);
  if (assignment.task == kCount) return Count(assignment);
  if (assignment.task == kRead) return ReadAll(assignment);
  const auto store = assignment.task == kFollowUps
                         ? OpenFollowUps(assignment.slot)
                         : OpenRecords(OfficeIn(assignment.folder), assignment.slot);
  KeepItems(assignment, *store);
}

}  // namespace stress
