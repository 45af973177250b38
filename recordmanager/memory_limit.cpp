#include "recordmanager/memory_limit.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "recordmanager/record_file.h"

namespace recordmanager {
namespace {

// Two of the longest lists to be expected, and the pages of some large files.
constexpr std::size_t kMostBytes = std::size_t{24} * 1024 * 1024;

}  // namespace

void MemoryLimit::Remove(const RecordFile& file) {
  std::erase_if(shares_, [&](const Share& share) {
    if (share.file == &file) bytes_ -= share.bytes;
    return share.file == &file;
  });
}

void MemoryLimit::Note(const RecordFile& file) {
  const auto share = std::find_if(shares_.rbegin(), shares_.rend(),
                                  [&](const Share& other) { return other.file == &file; });
  if (share == shares_.rend()) return;
  std::rotate(shares_.rbegin(), share, std::next(share));
  Count(shares_.back());
  for (auto other = shares_.begin(); bytes_ > kMostBytes && other->file != &file; ++other) {
    other->file->ForgetRecords();
    Count(*other);
  }
}

void MemoryLimit::Count(Share& share) {
  const std::size_t before = std::exchange(share.bytes, share.file->KeptBytes());
  bytes_ += share.bytes - before;
}

}  // namespace recordmanager
