#include "stress/slot.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include "stress/worker.h"
#include "testkit/engine_entry_point.h"

namespace stress {
namespace {

namespace fs = std::filesystem;

// The line behind a change that its killed worker had not done.
constexpr const char* kNotDone = "not done";

std::string TextOf(const Slot::Items& items) {
  std::string text;
  for (const int item : items) text += ' ' + std::to_string(item);
  return text;
}

Slot::Items ItemsIn(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<int>(stream), {}};
}

}  // namespace

void Journal::Write(const std::string& line) {
  if (!(file_ << line + '\n' << std::flush)) throw std::runtime_error("cannot write a journal");
}

fs::path JournalOf(const fs::path& folder, const std::string& task, int slot) {
  return folder / (task + '-' + std::to_string(slot) + ".journal");
}

std::vector<std::string> ReadJournal(const fs::path& path, std::streamoff& begin) {
  std::vector<std::string> lines;
  std::ifstream file(path, std::ios::binary);
  file.seekg(begin);
  for (std::string line; std::getline(file, line) && !file.eof();) {
    begin += static_cast<std::streamoff>(line.size() + 1);
    lines.push_back(line);
  }
  return lines;
}

// Takes what has been written since. Returns all that the slot may have held since.
std::vector<Slot::Items> Slot::ReadOn() {
  std::vector<Items> held{acknowledged_, begun_};
  for (const std::string& line : ReadJournal(path_, read_)) {
    if (line == kDone) {
      acknowledged_ = begun_;
    } else if (line == kNotDone) {
      begun_ = acknowledged_;
    } else {
      begun_ = ItemsIn(line);
      lastItem_ = std::max(lastItem_, *begun_.rbegin());
      held.push_back(begun_);
    }
  }
  return held;
}

Slot::Slot(const fs::path& folder, int number, const btrieve::EntryPoint& manager, unsigned seed)
    : store_(RecordsIn(folder), number, manager),
      path_(JournalOf(folder, kRecords, number)),
      journal_(path_),
      random_(seed) {}

void Slot::Check() {
  const Items items = store_.Items();
  ReadOn();
  if (items != acknowledged_ && items != begun_) {
    throw Fault("there should be" + TextOf(acknowledged_) + " or" + TextOf(begun_) +
                ", but there is" + TextOf(items));
  }
  if (begun_ != acknowledged_) journal_.Write(items == begun_ ? kDone : kNotDone);
}

void Slot::Step() {
  constexpr std::size_t kFewItems = 4;
  constexpr std::size_t kManyItems = 12;
  ReadOn();
  Items items = acknowledged_;
  const auto dice = random_() % 3;
  const bool grows = items.size() < kFewItems || (dice == 0 && items.size() < kManyItems);
  const auto any = static_cast<int>(grows ? 0 : random_() % items.size());
  const int gone = grows ? 0 : *std::next(items.begin(), any);
  const int come = grows || dice != 1 ? lastItem_ + 1 : 0;  // none is used again
  items.erase(gone);
  if (come != 0) items.insert(come);
  journal_.Write(TextOf(items));
  if (grows) store_.Add(come);
  if (come == 0) store_.Remove(gone);
  if (!grows && come != 0) store_.Replace(gone, come);
  journal_.Write(kDone);
}

void Slot::Look() {
  ReadOn();
  const Items seen = store_.Items();
  const std::vector<Items> held = ReadOn();
  Items always = held.front();
  Items ever;
  for (const Items& items : held) {
    std::erase_if(always, [&](int item) { return !items.contains(item); });
    ever.insert(items.begin(), items.end());
  }
  if (!std::ranges::includes(seen, always) || !std::ranges::includes(ever, seen)) {
    throw Fault("seen were" + TextOf(seen) + ", of" + TextOf(ever) + ", always there were" +
                TextOf(always));
  }
}

void ExpectSound(const fs::path& folder, int slots) {
  {
    recordmanager::Engine engine;
    for (int slot = 0; slot < slots; ++slot) {
      Slot(folder, slot, testkit::EntryPointOf(engine)).Check();
    }
  }
  ExpectUndamaged(RecordsIn(folder));
}

}  // namespace stress
