// Which state of a file a database is (leftovers.h), as its pages tell it where they lie.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "recordmanager/leftovers.h"
#include "recordmanager/raw_file.h"

namespace recordmanager {

using View = std::span<const std::uint8_t>;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kStatePage = 2;
constexpr std::uint32_t kSmallestPage = 512;
constexpr std::uint32_t kLargestPage = 65536;

bool StartsWith(View bytes, std::string_view mark);

// Numbers in SQLite's files are big-endian.
std::uint32_t NumberAt(View bytes, std::size_t offset);

struct States {
  StateNumber state{};
  StateNumber before{};

  static States On(View page);

  // Not on that of the first format.
  static bool AreOn(View page);
};

// The file without what lies beside it.
struct Base {
  Bytes firstPage;  // empty when it is no database
  std::uint32_t pagesThere = 0;
  bool hasStates = false;
  States states;

  int Read(const RawFile& file);

  // Or the page of the states was torn by a loss of power: then its states are true all the same,
  // as they lie together at its end, but the row that they belong to cannot be told.
  bool IsOfFirstFormat() const { return !firstPage.empty() && !hasStates; }
  bool IsUnwritten() const {
    return hasStates && states.state == states.before && MissingPages() == 0;
  }

  // What should be there and is not: the file was cut off, or a log was just being moved into it,
  // which has it.
  bool Misses(std::uint32_t page) const { return page > pagesThere && page <= PagesTold(); }
  std::uint32_t MissingPages() const;

 private:
  std::uint32_t PagesTold() const;
};

}  // namespace recordmanager
