#include "recordmanager/state_page.h"

#include <algorithm>
#include <cstring>

namespace recordmanager {

bool StartsWith(View bytes, std::string_view mark) {
  return std::memcmp(bytes.data(), mark.data(), mark.size()) == 0;
}

std::uint32_t NumberAt(View bytes, std::size_t offset) {
  std::uint32_t number = 0;
  for (const std::uint8_t byte : bytes.subspan(offset, sizeof number)) number = number << 8U | byte;
  return number;
}

States States::On(View page) {
  States states;
  const View last = page.last(states.state.size() + states.before.size());
  std::copy_n(last.begin(), states.state.size(), states.state.begin());
  std::copy_n(last.begin() + states.state.size(), states.before.size(), states.before.begin());
  return states;
}

// The page's only row begins with its length, its number, and a head that tells its own length and
// what each column is: the last two are of eight bytes each.
bool States::AreOn(View page) {
  constexpr std::size_t kRowPlace = 8;
  constexpr std::uint8_t kEightBytes = 28;
  std::size_t head = NumberAt(page, kRowPlace - 2) & 0xFFFFU;
  for (int numbers = 2; head < page.size() && numbers > 0; ++head) {
    if (page[head] < 0x80) --numbers;  // a number's last byte
  }
  const std::size_t end = head < page.size() ? head + page[head] : 0;
  return end > head + 2 && end <= page.size() && page[end - 1] == kEightBytes &&
         page[end - 2] == kEightBytes;
}

int Base::Read(const RawFile& file) {
  constexpr std::string_view kDatabaseMark = "SQLite format 3";
  constexpr std::size_t kDatabaseHeadSize = 100;
  constexpr std::size_t kPageSizePlace = 14;  // in the low half of the number there; 1 for 65536
  *this = {};
  Bytes page(kDatabaseHeadSize);
  int status = file.Read(0, page);
  if (status != btrieve::kSuccess || !StartsWith(page, kDatabaseMark)) return ErrorOf(status);
  const std::size_t size = NumberAt(page, kPageSizePlace) & 0xFFFFU;
  page.resize(size == 1 ? kLargestPage : std::max<std::size_t>(size, kSmallestPage));
  status = file.Read(0, page);
  firstPage = page;
  std::int64_t bytesThere = 0;
  if (status == btrieve::kSuccess) status = file.Size(bytesThere);
  pagesThere = static_cast<std::uint32_t>(bytesThere / std::ssize(page));
  if (status == btrieve::kSuccess) {
    status = file.Read(static_cast<std::int64_t>((kStatePage - 1) * page.size()), page);
  }
  // The first page may tell another format, if the change to it was interrupted.
  hasStates = States::AreOn(page);
  states = States::On(page);
  return ErrorOf(status);
}

std::uint32_t Base::MissingPages() const {
  constexpr std::uint32_t kLocks = 0x40000000;  // the page there is never written
  const std::uint32_t told = PagesTold();
  if (told <= pagesThere) return 0;
  const bool skipsOne = Misses(static_cast<std::uint32_t>(kLocks / firstPage.size() + 1));
  return told - pagesThere - (skipsOne ? 1 : 0);
}

// 0 unless the first page tells.
std::uint32_t Base::PagesTold() const {
  constexpr std::size_t kWrites = 24;
  constexpr std::size_t kPages = 28;
  constexpr std::size_t kWritesWhenCounted = 92;
  const bool isTold =
      !firstPage.empty() && NumberAt(firstPage, kWrites) == NumberAt(firstPage, kWritesWhenCounted);
  return isTold ? NumberAt(firstPage, kPages) : 0;
}

}  // namespace recordmanager
