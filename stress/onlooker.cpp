#include "stress/onlooker.h"

#include <string>

namespace stress {

void Onlooker::Look() {
  history_.ReadOn();
  const std::set<int> before = history_.Items();
  const std::set<int> seen = store_->Items();
  const std::set<int> changing = history_.ReadOn();
  const bool quiet = changing == std::set{0};
  if (quiet || store_->ReadsInOneWalk()) Expect(before, seen, changing, " was not seen");
  Expect(seen, before, changing, " was seen, but had gone");
}

void Onlooker::Expect(const std::set<int>& items, const std::set<int>& among,
                      const std::set<int>& changing, const char* otherwise) {
  for (const int item : items) {
    if (among.contains(item) || changing.contains(item)) continue;
    throw Fault(Fault::kLost, "item " + std::to_string(item) + otherwise);
  }
}

}  // namespace stress
