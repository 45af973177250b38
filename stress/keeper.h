// The keepers of a slot's items, and their journal: a line before and after each write. From it the
// successor of a killed keeper knows what had been acknowledged.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "stress/store.h"

namespace stress {

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

// The complete lines of a journal from `begin` on, which becomes their end; none when there is no
// such journal.
std::vector<std::string> ReadJournal(const std::filesystem::path& path, std::streamoff& begin);

// One change to the items, as it stands in the journal before it is begun: "+ 5 0" adds item 5,
// "- 5 0" removes it, "= 5 6" puts 6 in its place.
struct Change {
  char what = ' ';
  int item = 0;
  int by = 0;

  void ApplyTo(std::set<int>& items) const;
};

// The lines behind a change: it was acknowledged; or its worker was killed and it had not been
// done.
inline constexpr const char* kDone = "done";
inline constexpr const char* kNotDone = "not done";

// What a keeper's journal says that its slot holds.
class History {
 public:
  explicit History(std::filesystem::path journal) : journal_(std::move(journal)) { ReadOn(); }

  // Takes what has been written since. Returns the items that the changes begun or ended since
  // concern.
  std::set<int> ReadOn();

  // What was acknowledged, and the change that has been begun since, if there is one.
  const std::set<int>& Items() const { return items_; }
  const Change& Open() const { return open_; }

  // The highest item ever named.
  int LastItem() const { return lastItem_; }

 private:
  std::filesystem::path journal_;
  std::streamoff read_ = 0;
  std::set<int> items_;
  Change open_;
  int lastItem_ = 0;
};

class Keeper {
 public:
  // Throws a Fault when the store does not hold what the journal says: all that was done, and
  // of the one thing that may have been begun, all or nothing. What it will do follows from the
  // seed.
  Keeper(Store& store, const std::filesystem::path& journal,
         unsigned seed = std::random_device()());

  // One more change.
  void Step();

 private:
  Change Choose();

  Store& store_;
  std::set<int> items_;
  int lastItem_ = 0;  // never used again
  Journal journal_;
  std::mt19937 random_;
};

// Reads a slot's items beside their keeper.
class Onlooker {
 public:
  Onlooker(Store store, const std::filesystem::path& keepersJournal)
      : store_(std::move(store)), history_(keepersJournal) {}

  // Throws a Fault when what was acknowledged before is not there, or what had gone before is; of
  // what changes meanwhile either may be.
  void Look();

 private:
  Store store_;
  History history_;
};

}  // namespace stress
