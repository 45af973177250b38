// The offices that are measured in, below the folder that the program is given.
#pragma once

#include <filesystem>

#include "frame/registry.h"

namespace bench {

struct Offices {
  std::filesystem::path work;   // for what a run needs for itself; empty when it begins
  std::filesystem::path small;  // 100 cases
  std::filesystem::path usual;  // 10,000 cases
  std::filesystem::path large;  // as many as scripts/bench was told
};

// Set once, before the measurements begin.
const Offices& TheOffices();
void SetOffices(const std::filesystem::path& folder);

// From now on the exports work in this office.
void UseOffice(const std::filesystem::path& office);

// As the exports read it from the registry.
qlx99::DataRoot DataRootOf(const std::filesystem::path& office);

}  // namespace bench
