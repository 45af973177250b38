// Keeps a slot's items: writes down what it is about to do, does it, writes down that it is done;
// and when it comes after one that was killed, finds out what that one had been promised.
#pragma once

#include <filesystem>
#include <random>
#include <set>
#include <string>

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

}  // namespace stress
