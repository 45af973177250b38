// The keepers of a slot's items, and their journal. It has the items to which a change leads before
// the change is begun, and behind them whether it was done. So the successor of a killed keeper
// knows what had been acknowledged.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "stress/store.h"

namespace stress {

// What a worker writes down, with kDone for each write or look, in the trial's folder.
class Journal {
 public:
  // Goes on with the journal of those before.
  explicit Journal(const std::filesystem::path& path)
      : file_(path, std::ios::binary | std::ios::app) {}

  // The line is the operating system's when this returns; killing the worker does not take it back.
  void Write(const std::string& line);

 private:
  std::ofstream file_;
};
inline constexpr const char* kDone = "done";

std::filesystem::path JournalOf(const std::filesystem::path& folder, const std::string& task,
                                int slot);

// The complete lines of a journal from `begin` on, which becomes their end; none when there is no
// such journal.
std::vector<std::string> ReadJournal(const std::filesystem::path& path, std::streamoff& begin);

// A slot, as its keeper works on it and others look on.
class Slot {
 public:
  using Items = std::set<int>;

  // What its keeper will do follows from the number that chance is begun with.
  Slot(const std::filesystem::path& folder, int number, const btrieve::EntryPoint& manager,
       unsigned seed = std::random_device()());

  // A keeper's first. Throws a Fault when the store does not hold what the journal says: all that
  // was done, and of the one thing that may have been begun, all or nothing.
  void Check();

  // One more change.
  void Step();

  // For those beside the keeper. Throws a Fault when what was acknowledged before is not there, or
  // what had gone before is; of what changes meanwhile either may be.
  void Look();

 private:
  std::vector<Items> ReadOn();

  Store store_;
  std::filesystem::path path_;
  Journal journal_;
  std::streamoff read_ = 0;
  Items acknowledged_;
  Items begun_;       // to what the change leads that has been begun since, or the same
  int lastItem_ = 0;  // ever named
  std::mt19937 random_;
};

// When nobody is at work: the next to come find the items of the first slots, and the file is
// sound.
void ExpectSound(const std::filesystem::path& folder, int slots);

}  // namespace stress
