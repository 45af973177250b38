#include "recordmanager/record_block.h"

#include <algorithm>

namespace recordmanager {

void RecordBlock::Begin(const Cut& cut, Direction direction) {
  low_ = high_ = cut;
  direction_ = direction;
  rows_.clear();
  bytes_.clear();
}

bool RecordBlock::Add(const KeyedRecord& record) {
  const bool up = direction_ == Direction::kUp;
  Cut& end = up ? high_ : low_;
  if (end.IsBehind(record.entry) == up) return false;
  end = {record.entry, up};
  const auto entry = std::span(record.entry.bytes).first(record.entry.size);
  rows_.push_back({record.id, record.version, static_cast<std::uint32_t>(bytes_.size()),
                   static_cast<std::uint16_t>(record.data.size()), record.entry.size});
  if (rows_.size() == 1) bytes_.reserve(entry.size() + record.data.size());
  bytes_.insert(bytes_.end(), entry.begin(), entry.end());
  bytes_.insert(bytes_.end(), record.data.begin(), record.data.end());
  return true;
}

void RecordBlock::Close(bool atEnd) {
  if (direction_ == Direction::kDown) std::reverse(rows_.begin(), rows_.end());
  if (!atEnd) return;
  if (direction_ == Direction::kUp) {
    high_ = Cut::BehindAll();
  } else {
    low_ = Cut::BeforeAll();
  }
}

bool RecordBlock::EndsKey(Direction direction) const {
  return direction == Direction::kUp ? high_ == Cut::BehindAll() : low_ == Cut::BeforeAll();
}

std::size_t RecordBlock::Bytes() const {
  return sizeof(RecordBlock) + rows_.capacity() * sizeof(Row) + bytes_.capacity();
}

std::size_t RecordBlock::Find(const Cut& cut, Direction direction) const {
  const auto behind = std::partition_point(
      rows_.begin(), rows_.end(), [&](const Row& row) { return cut.IsBehind(EntryOf(row)); });
  const auto index = static_cast<std::size_t>(behind - rows_.begin());
  if (direction == Direction::kDown) return index == 0 ? kNone : index - 1;
  return index == rows_.size() ? kNone : index;
}

std::size_t RecordBlock::Next(std::size_t index, Direction direction) const {
  if (direction == Direction::kDown) return index == 0 ? kNone : index - 1;
  return index + 1 == rows_.size() ? kNone : index + 1;
}

void RecordBlock::FetchBeyond(std::size_t index, Direction direction) const {
  constexpr std::size_t kSteps = 2;
  constexpr std::size_t kCacheLine = 64;
  // Below the first, the difference wraps and is beyond the last.
  const std::size_t soon = direction == Direction::kUp ? index + kSteps : index - kSteps;
  if (soon >= rows_.size()) return;
  const Row& row = rows_[soon];
  const std::size_t end = row.begin + row.entrySize + row.size;
  for (std::size_t place = row.begin; place < end; place += kCacheLine) {
    __builtin_prefetch(&bytes_[place]);
  }
}

Entry RecordBlock::EntryOf(const Row& row) const {
  return Entry::From(bytes_.data() + row.begin, row.entrySize);
}

KeyedRecord RecordBlock::At(std::size_t index) const {
  const Row& row = rows_[index];
  return {EntryOf(row), row.id, row.version,
          std::span(bytes_).subspan(row.begin + row.entrySize, row.size)};
}

}  // namespace recordmanager
