#include "stress/history.h"

#include <algorithm>
#include <sstream>

namespace stress {
namespace {

Change ChangeIn(const std::string& line) {
  Change change;
  std::istringstream(line) >> change.what >> change.item >> change.by;
  return change;
}

}  // namespace

std::string Change::Text() const {
  return std::string(1, what) + ' ' + std::to_string(item) + ' ' + std::to_string(by);
}

void Change::ApplyTo(std::set<int>& items) const {
  if (what != '+') items.erase(item);
  if (what == '+') items.insert(item);
  if (what == '=') items.insert(by);
}

std::set<int> History::ReadOn() {
  std::set<int> concerned{open_.item, open_.by};
  for (const std::string& line : journal_.NewLines()) {
    if (line == kDone) open_.ApplyTo(items_);
    open_ = line == kDone || line == kNotDone ? Change{} : ChangeIn(line);
    concerned.insert({open_.item, open_.by});
    lastItem_ = std::max({lastItem_, open_.item, open_.by});
  }
  return concerned;
}

}  // namespace stress
