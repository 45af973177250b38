#include "stress/worker.h"

#include <algorithm>
#include <chrono>
#include <random>

#include "frame/attach.h"
#include "frame/exports.h"
#include "office/new_office.h"
#include "office/setup.h"
#include "stress/history.h"
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

// The items of one slot, for who reads beside their keeper.
class Onlooker {
 public:
  Onlooker(const Assignment& reader, const char* keepersTask, int slot)
      : store_(OpenStore(keepersTask, reader.folder, slot)),
        history_(JournalOf({keepersTask, reader.folder, slot})) {}

  // Reads them. Throws a Fault when what was acknowledged before is not among them, or what had
  // gone before is; of what changes meanwhile either may be.
  void Look() {
    history_.ReadOn();
    const std::set<int> before = history_.Items();
    const std::set<int> seen = store_->Items();
    const std::set<int> changing = history_.ReadOn();
    const bool quiet = changing == std::set{0};
    if (quiet || store_->ReadsInOneWalk()) Expect(before, seen, changing, " was not seen");
    Expect(seen, before, changing, " was seen, but had gone");
  }

 private:
  static void Expect(const std::set<int>& items, const std::set<int>& among,
                     const std::set<int>& changing, const char* otherwise) {
    for (const int item : items) {
      if (among.contains(item) || changing.contains(item)) continue;
      throw Fault(Fault::kLost, "item " + std::to_string(item) + otherwise);
    }
  }

  std::unique_ptr<Store> store_;
  History history_;
};

void ReadAll(const Assignment& assignment) {
  std::vector<Onlooker> onlookers;
  for (int slot = 0; slot < assignment.slots; ++slot) {
    for (const char* task : {kFollowUps, kRecords}) onlookers.emplace_back(assignment, task, slot);
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
  StartCounter(OfficeIn(folder));
}

void Work(const Assignment& assignment) {
  const Installation installation(assignment.folder);
  if (assignment.task == kNumbers) return TakeNumbers(assignment);
  if (assignment.task == kCount) return Count(assignment);
  if (assignment.task == kRead) return ReadAll(assignment);
  KeepItems(assignment);
}

}  // namespace stress
