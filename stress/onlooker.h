// Reads a slot's items beside their keeper.
#pragma once

#include <filesystem>
#include <memory>
#include <set>

#include "stress/history.h"
#include "stress/store.h"

namespace stress {

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
