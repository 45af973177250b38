#include "stress/keeper.h"

#include <iterator>

namespace stress {
namespace {

constexpr std::size_t kFewItems = 4;
constexpr std::size_t kManyItems = 12;

std::string TextOf(const std::set<int>& items) {
  std::string text;
  for (const int item : items) text += ' ' + std::to_string(item);
  return text;
}

}  // namespace

Keeper::Keeper(Store& store, const std::filesystem::path& journal, unsigned seed)
    : store_(store), items_(store.Items()), journal_(journal), random_(seed) {
  const History history(journal);
  lastItem_ = history.LastItem();
  std::set<int> completed = history.Items();
  history.Open().ApplyTo(completed);
  if (items_ != history.Items() && items_ != completed) {
    throw Fault(Fault::kLost, "there should be" + TextOf(history.Items()) + " or" +
                                  TextOf(completed) + ", but there is" + TextOf(items_));
  }
  if (history.Open().what != ' ') journal_.Write(items_ == completed ? kDone : kNotDone);
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
