// `qlx_stress power`: the power goes while two workstations write.
#include <array>
#include <iostream>
#include <iterator>
#include <optional>
#include <random>
#include <string>

#include "stress/frail_disk.h"
#include "stress/slot.h"
#include "stress/trials.h"
#include "testkit/engine_entry_point.h"

namespace stress {
namespace {

namespace fs = std::filesystem;

// Keeps a slot, with a record manager of its own.
struct Workstation {
  Workstation(const fs::path& folder, int slot, unsigned seed)
      : keeper(folder, slot, testkit::EntryPointOf(engine), seed) {
    keeper.Check();
  }

  recordmanager::Engine engine;
  Slot keeper;
};

// A record file from its creation on, through several losses of power.
class Life {
 public:
  Life(const fs::path& folder, unsigned seed, bool ignoreSync)
      : folder_(folder), random_(seed), disk_(OfficeIn(folder), seed, ignoreSync) {}

  // Throws what it finds.
  void LiveThrough(int losses) {
    constexpr unsigned kMostRequests = 120;
    for (int i = 0; i < losses; ++i) {
      disk_.CutAt(1 + static_cast<int>(random_() % kMostRequests));
      try {
        WorkUntilTheCut();
      } catch (const std::exception&) {
        if (!disk_.IsOff()) throw;
      }
      for (auto& workstation : workstations_) workstation.reset();
      disk_.Restart();
      ExpectSound();
    }
    if (fs::exists(file_)) ComeToWork();
  }

 private:
  void WorkUntilTheCut() {
    if (!fs::exists(file_)) Create();
    for (ComeToWork(); !disk_.IsOff();) {
      auto& workstation = workstations_[random_() % std::size(workstations_)];
      const auto dice = random_() % 10;
      if (dice == 0) ComeToWork();
      if (dice < 3) workstation->keeper.Check();
      if (dice >= 3) workstation->keeper.Step();
    }
  }

  void Create() {
    if (created_) throw Fault("the file has gone");
    MakeRecordsIn(folder_);
    created_ = !disk_.IsOff();  // what nobody can have seen is not acknowledged
    if (random_() % 2 == 0) UseRollbackJournal(file_);
  }

  // Those of before have left.
  void ComeToWork() {
    int slot = 0;
    for (auto& workstation : workstations_) {
      workstation.reset();
      workstation.emplace(folder_, slot++, random_());
    }
  }

  // Looked at in a copy, as the next to come shall find the file as the cut has left it.
  void ExpectSound() {
    const fs::path copy = folder_ / "copy";
    fs::remove_all(copy);
    fs::copy(OfficeIn(folder_), copy);
    if (fs::exists(file_)) ExpectUndamaged(copy / file_.filename());
  }

  fs::path folder_;
  fs::path file_ = RecordsIn(folder_);
  std::mt19937 random_;
  FrailDisk disk_;
  bool created_ = false;
  std::array<std::optional<Workstation>, 2> workstations_;
};

}  // namespace

void RunPower(const Options& options) {
  constexpr int kLossesOfALife = 20;
  unsigned seed = options.seed;
  for (int losses = 0; losses < options.losses; losses += kLossesOfALife, ++seed) {
    const fs::path folder = options.folder / std::to_string(seed);
    fs::create_directories(OfficeIn(folder));
    try {
      Life(folder, seed, options.ignoreSync).LiveThrough(kLossesOfALife);
    } catch (const std::exception& found) {
      throw Fault("--seed " + std::to_string(seed) + ": " + found.what());
    }
    fs::remove_all(folder);
  }
  std::cout << options.losses << " losses of power, --seed " << options.seed << " to " << seed - 1
            << '\n';
}

}  // namespace stress
