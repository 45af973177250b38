// The keepers of a slot's items, and their journal: a line before and after each write. From it the
// successor of a killed keeper knows what had been acknowledged.
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

// What a keeper's journal says that its slot holds. It has the items to which a change leads before
// the change is begun, and behind them whether it was acknowledged.
class History {
 public:
  using Items = std::set<int>;

  explicit History(std::filesystem::path journal) : journal_(std::move(journal)) {}

  // Takes what has been written since. Returns all that the slot may have held since.
  std::vector<Items> ReadOn();

  // What was acknowledged; and to what the change leads that has been begun since, or the same.
  const Items& Acknowledged() const { return acknowledged_; }
  const Items& Begun() const { return begun_; }

  // The highest item ever named.
  int LastItem() const { return lastItem_; }

 private:
  std::filesystem::path journal_;
  std::streamoff read_ = 0;
  Items acknowledged_;
  Items begun_;
  int lastItem_ = 0;
};

class Keeper {
 public:
  // What it will do follows from the seed.
  Keeper(const std::filesystem::path& folder, int slot, const btrieve::EntryPoint& manager,
         unsigned seed = std::random_device()());

  // First of all. Throws a Fault when the store does not hold what the journal says: all that was
  // done, and of the one thing that may have been begun, all or nothing.
  void Check();

  // One more change.
  void Step();

 private:
  Store store_;
  History history_;
  Journal journal_;
  std::mt19937 random_;
};

// Reads a slot's items beside their keeper.
class Onlooker {
 public:
  Onlooker(const std::filesystem::path& folder, int slot, const btrieve::EntryPoint& manager);

  // Throws a Fault when what was acknowledged before is not there, or what had gone before is; of
  // what changes meanwhile either may be.
  void Look();

 private:
  Store store_;
  History history_;
};

// When nobody is at work: the next to come find the items of the first slots, and the file is
// sound.
void ExpectSound(const std::filesystem::path& folder, int slots);

}  // namespace stress
