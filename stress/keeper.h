// Keeps a slot's items: writes down what it is about to do, does it, writes down that it is done;
// and when it comes after one that was killed, finds out what that one had been promised.
#pragma once

#include <filesystem>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <utility>

#include "stress/journal.h"
#include "stress/store.h"

namespace stress {

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
  Store& store_;
  std::set<int> items_;
  int lastItem_ = 0;  // never used again
  Journal journal_;
  std::mt19937 random_;
};

// Reads a slot's items beside their keeper.
class Onlooker {
 public:
  Onlooker(std::unique_ptr<Store> store, const std::filesystem::path& keepersJournal)
      : store_(std::move(store)), history_(keepersJournal) {}

  // Reads them. Throws a Fault when what was acknowledged before is not among them, or what had
  // gone before is; of what changes meanwhile either may be.
  void Look();

 private:
  static void Expect(const std::set<int>& items, const std::set<int>& among,
                     const std::set<int>& changing, const char* otherwise);

  std::unique_ptr<Store> store_;
  History history_;
};

}  // namespace stress
