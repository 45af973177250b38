#include "stress/keeper.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace stress {
namespace {

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

void ExpectAmong(const std::set<int>& known, const std::set<int>& changing,
                 const std::set<int>& items, const char* otherwise) {
  for (const int item : items) {
    if (known.contains(item) || changing.contains(item)) continue;
    throw Fault("item " + std::to_string(item) + otherwise);
  }
}

}  // namespace

void Journal::Write(const std::string& line) {
  if (!(file_ << line + '\n' << std::flush)) throw std::runtime_error("cannot write a journal");
}

std::vector<std::string> ReadJournal(const std::filesystem::path& path, std::streamoff& begin) {
  std::vector<std::string> lines;
  std::ifstream file(path, std::ios::binary);
  file.seekg(begin);
  for (std::string line; std::getline(file, line) && !file.eof();) {
    begin += static_cast<std::streamoff>(line.size() + 1);
    lines.push_back(line);
  }
  return lines;
}

void Change::ApplyTo(std::set<int>& items) const {
  if (what != '+') items.erase(item);
  if (what == '+') items.insert(item);
  if (what == '=') items.insert(by);
}

std::set<int> History::ReadOn() {
  std::set<int> concerned{open_.item, open_.by};
  for (const std::string& line : ReadJournal(journal_, read_)) {
    if (line == kDone) open_.ApplyTo(items_);
    open_ = line == kDone || line == kNotDone ? Change{} : ChangeIn(line);
    concerned.insert({open_.item, open_.by});
    lastItem_ = std::max({lastItem_, open_.item, open_.by});
  }
  return concerned;
}

Keeper::Keeper(Store& store, const std::filesystem::path& journal, unsigned seed)
    : store_(store), items_(store.Items()), journal_(journal), random_(seed) {
  const History history(journal);
  lastItem_ = history.LastItem();
  std::set<int> completed = history.Items();
  history.Open().ApplyTo(completed);
  if (items_ != history.Items() && items_ != completed) {
    throw Fault("there should be" + TextOf(history.Items()) + " or" + TextOf(completed) +
                ", but there is" + TextOf(items_));
  }
  if (history.Open().what != ' ') journal_.Write(items_ == completed ? kDone : kNotDone);
}

Change Keeper::Choose() {
  constexpr std::size_t kFewItems = 4;
  constexpr std::size_t kManyItems = 12;
  const auto dice = random_() % 3;
  if (items_.size() < kFewItems || (dice == 0 && items_.size() < kManyItems)) {
    return {'+', ++lastItem_, 0};
  }
  const int any = *std::next(items_.begin(), static_cast<int>(random_() % items_.size()));
  if (dice == 1) return {'-', any, 0};
  return {'=', any, ++lastItem_};
}

void Keeper::Step() {
  const Change change = Choose();
  std::ostringstream line;
  line << change.what << ' ' << change.item << ' ' << change.by;
  journal_.Write(line.str());
  if (change.what == '+') store_.Add(change.item);
  if (change.what == '-') store_.Remove(change.item);
  if (change.what == '=') store_.Replace(change.item, change.by);
  change.ApplyTo(items_);
  journal_.Write(kDone);
}

void Onlooker::Look() {
  history_.ReadOn();
  const std::set<int> before = history_.Items();
  const std::set<int> seen = store_.Items();
  const std::set<int> changing = history_.ReadOn();
  ExpectAmong(seen, changing, before, " was not seen");
  ExpectAmong(before, changing, seen, " was seen, but had gone");
}

}  // namespace stress
