// The page of a database that tells which state of the file it is (leftovers.h), as it lies there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "recordmanager/leftovers.h"

namespace recordmanager {

using View = std::span<const std::uint8_t>;

constexpr std::uint32_t kStatePage = 2;

// Numbers in SQLite's files are big-endian.
std::uint32_t NumberAt(View bytes, std::size_t offset);

struct States {
  StateNumber state{};
  StateNumber before{};

  static States On(View page);

  // Not on that of the first format.
  static bool AreOn(View page);
};

}  // namespace recordmanager
