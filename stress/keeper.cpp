#include "stress/keeper.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include "stress/worker.h"

namespace stress {
namespace {

constexpr const char* kNotDone = "not done";
constexpr std::size_t kFewItems = 4;
constexpr std::size_t kManyItems = 12;

// One change, as it stands in the journal: "+ 5 0", "- 5 0", "= 5 6".
struct Change {
  char what = ' ';
  int item = 0;
  int by = 0;

  std::string Text() const {
    return std::string(1, what) + ' ' + std::to_string(item) + ' ' + std::to_string(by);
  }

  void ApplyTo(std::set<int>& items) const {
    if (what != '+') items.erase(item);
    if (what == '+') items.insert(item);
    if (what == '=') items.insert(by);
  }
};

Change ChangeIn(const std::string& line) {
  Change change;
  std::istringstream(line) >> change.what >> change.item >> change.by;
  return change;
}

std::string TextOf(const std::set<int>& items) {
  std::string text;
  for (const int item : items) text += ' ' + std::to_string(item);
  return text;
}

// What the journal says.
struct History {
  explicit History(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
      if (line == kDone) open.ApplyTo(items);
      open = line == kDone || line == kNotDone ? Change{} : ChangeIn(line);
      lastItem = std::max({lastItem, open.item, open.by});
    }
  }

  std::set<int> items;
  Change open;  // begun by one who was killed
  int lastItem = 0;
};

}  // namespace

Keeper::Keeper(Store& store, const std::filesystem::path& journal)
    : store_(store), items_(store.Items()), journal_(journal) {
  const History history(ReadJournal(journal));
  lastItem_ = history.lastItem;
  std::set<int> completed = history.items;
  history.open.ApplyTo(completed);
  if (items_ != history.items && items_ != completed) {
    throw Fault(Fault::kLost, "there should be" + TextOf(history.items) + " or" +
                                  TextOf(completed) + ", but there is" + TextOf(items_));
  }
  if (history.open.what != ' ') journal_.Write(items_ == completed ? kDone : kNotDone);
}

void Keeper::Step() {
  const auto any = [&] {
    return *std::next(items_.begin(), static_cast<int>(random_() % items_.size()));
  };
  const auto dice = random_() % 3;
  Change change;
  if (items_.size() < kFewItems || (dice == 0 && items_.size() < kManyItems)) {
    change = {'+', ++lastItem_, 0};
  } else if (dice == 1) {
    change = {'-', any(), 0};
  } else {
    const int item = any();
    change = {'=', item, ++lastItem_};
  }
  journal_.Write(change.Text());
  switch (change.what) {
    case '+':
      store_.Add(change.item);
      break;
    case '-':
      store_.Remove(change.item);
      break;
    default:
      store_.Replace(change.item, change.by);
  }
  change.ApplyTo(items_);
  journal_.Write(kDone);
}

}  // namespace stress
