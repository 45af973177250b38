// The power goes while two workstations write a record file, again and again.
#pragma once

#include <filesystem>
#include <iosfwd>

namespace stress {

struct PowerPlan {
  std::filesystem::path folder;
  unsigned seed = 0;
  int losses = 1000;
  bool ignoreSync = false;  // as a disk would that does not do what it says
};

// Writes a report, which names the seeds that find something: each alone finds the same again. True
// when nothing acknowledged was lost, doubled, torn or damaged.
bool RunPower(const PowerPlan& plan, std::ostream& report);

}  // namespace stress
