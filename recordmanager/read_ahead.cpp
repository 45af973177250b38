#include "recordmanager/read_ahead.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string_view>
#include <utility>

namespace recordmanager {
namespace {

// How many records a block has: few at first, four times as many for a walk that has come to the
// end of the one before.
constexpr std::size_t kFirstCount = 8;
constexpr std::size_t kGrowth = 4;
constexpr std::size_t kLargestBlock = std::size_t{64} * 1024;  // bytes of data

// The most that is kept of each file: enough for the longest list to be expected, 10,000 parties of
// a case, and for records that are looked up again and again.
constexpr std::size_t kMostBytes = std::size_t{10} * 1024 * 1024;
constexpr std::size_t kMostBlocks = 512;
constexpr std::size_t kMostLookedUp = 256;
constexpr std::size_t kMostLookedUpBytes = std::size_t{4} * 1024 * 1024;

}  // namespace

std::size_t LookedUp::IndexOf(std::size_t key, const Cut& cut) {
  const auto* bytes = reinterpret_cast<const char*>(cut.entry.bytes.data());
  return (std::hash<std::string_view>()({bytes, cut.entry.size}) + key) % kMostLookedUp;
}

const RecordBlock* LookedUp::Find(std::size_t key, const Cut& cut, Direction direction) const {
  if (places_.empty()) return nullptr;
  const Place& place = places_[IndexOf(key, cut)];
  return place.key == key && place.block.BeginsAt(cut, direction) ? &place.block : nullptr;
}

LookedUp::Place& LookedUp::PlaceFor(std::size_t key, const Cut& cut) {
  if (bytes_ > kMostLookedUpBytes) places_ = {};
  if (places_.empty()) {
    places_.resize(kMostLookedUp);
    bytes_ = places_.size() * sizeof(Place);
  }
  Place& place = places_[IndexOf(key, cut)];
  place.key = SIZE_MAX;
  return place;
}

void LookedUp::Keep(Place& place, std::size_t key) {
  place.key = key;
  const std::size_t before = std::exchange(place.bytes, place.block.Bytes());
  bytes_ += place.bytes - before;
}

void LookedUp::Clear() {
  for (Place& place : places_) place.key = SIZE_MAX;
}

bool ReadAhead::LookAt(const LogState& state) {
  if (state == state_) return true;
  Clear();
  state_ = state;
  return false;
}

void ReadAhead::Clear() {
  lookedUp_.Clear();
  for (KeyBlocks& kept : keys_) {
    kept.blocks.clear();
    kept.block = nullptr;
  }
  bytes_ = 0;
  count_ = 0;
}

void ReadAhead::Forget() {
  Clear();
  lookedUp_ = {};
  reading_ = {};
}

// The block that says what comes next to the cut in that direction; null when none does.
const RecordBlock* ReadAhead::BlockBeyond(const Blocks& blocks, const Cut& cut,
                                          Direction direction) {
  const bool up = direction == Direction::kUp;
  auto found = up ? blocks.upper_bound(cut) : blocks.lower_bound(cut);
  if (found == blocks.begin()) return nullptr;
  const RecordBlock& block = std::prev(found)->second;
  const bool within = up ? cut < block.High() || block.EndsKey(direction) : !(block.High() < cut);
  return within ? &block : nullptr;
}

// A step of a walk: from where the last record was found to the next one in the same block.
bool ReadAhead::StepOn(KeyBlocks& kept, const Cut& cut, Direction direction) {
  if (kept.block == nullptr || cut.behind != (direction == Direction::kUp) ||
      !(kept.block->EntryAt(kept.index) == cut.entry)) {
    return false;
  }
  const std::size_t next = kept.block->Next(kept.index, direction);
  if (next == RecordBlock::kNone) return false;
  kept.index = next;
  kept.block->FetchBeyond(next, direction);
  return true;
}

ReadAhead::Answer ReadAhead::Find(std::size_t key, Cut& cut, Direction direction, Purpose purpose,
                                  KeyedRecord& record) {
  KeyBlocks& kept = keys_[key];
  if (purpose != Purpose::kStep) kept.walks = kept.stepped;
  kept.stepped = purpose == Purpose::kStep;
  bool found = StepOn(kept, cut, direction);
  while (!found) {
    if (const RecordBlock* one = lookedUp_.Find(key, cut, direction); one != nullptr) {
      if (one->Count() == 0) return Answer::kNoMore;
      record = one->At(0);
      return Answer::kFound;
    }
    const RecordBlock* block = BlockBeyond(kept.blocks, cut, direction);
    if (block == nullptr) return Answer::kUnknown;
    const std::size_t index = block->Find(cut, direction);
    found = index != RecordBlock::kNone;
    if (found) {
      kept.block = block;
      kept.index = index;
    } else if (block->EndsKey(direction)) {
      return Answer::kNoMore;
    } else {
      cut = block->End(direction);
    }
  }
  record = kept.block->At(kept.index);
  return Answer::kFound;
}

RecordBlock& ReadAhead::Begin(std::size_t key, const Cut& cut, Direction direction,
                              Purpose purpose) {
  const bool keeps = state_ != LogState{};
  const bool walks = purpose == Purpose::kStep || (purpose == Purpose::kSearch && keys_[key].walks);
  reading_.key = key;
  reading_.place = keeps && !walks ? &lookedUp_.PlaceFor(key, cut) : nullptr;
  reading_.count = keeps && walks ? kFirstCount : 1;
  const Direction back = direction == Direction::kUp ? Direction::kDown : Direction::kUp;
  if (reading_.count != 1) {
    const RecordBlock* const before = BlockBeyond(keys_[key].blocks, cut, back);
    if (before != nullptr) reading_.count = std::max(kFirstCount, before->Count() * kGrowth);
  }
  RecordBlock& block = reading_.place != nullptr ? reading_.place->block : reading_.block;
  block.Begin(cut, direction);
  return block;
}

std::size_t ReadAhead::CountToRead(std::size_t recordLength) const {
  return std::clamp<std::size_t>(kLargestBlock / recordLength, 1, reading_.count);
}

void ReadAhead::Keep() {
  const RecordBlock& block = reading_.block;
  if (reading_.place != nullptr) {
    lookedUp_.Keep(*reading_.place, reading_.key);
  } else if (state_ != LogState{} && block.Low() < block.High()) {
    if (bytes_ > kMostBytes || count_ == kMostBlocks) Clear();
    KeyBlocks& kept = keys_[reading_.key];
    kept.block = nullptr;
    const auto next = DropOverlapping(kept.blocks, block);
    // Counted as the copy that is kept, which takes less than what was read into.
    bytes_ += kept.blocks.emplace_hint(next, block.Low(), block)->second.Bytes();
    ++count_;
  }
}

// Returns the one behind.
ReadAhead::Blocks::iterator ReadAhead::DropOverlapping(Blocks& blocks, const RecordBlock& block) {
  auto other = blocks.lower_bound(block.Low());
  if (other != blocks.begin() && block.Low() < std::prev(other)->second.High()) --other;
  while (other != blocks.end() && other->second.Low() < block.High()) {
    bytes_ -= other->second.Bytes();
    --count_;
    other = blocks.erase(other);
  }
  return other;
}

}  // namespace recordmanager
