// Many processes on one office, any of which may be killed at any moment; and what is left of it.
#pragma once

#include <filesystem>
#include <iosfwd>

namespace stress {

struct Plan {
  std::filesystem::path folder;  // does not exist, and is left behind when something was found
  int seconds = 5;
  int processes = 10;
  int pause = 25;  // milliseconds between two kills, on the average; 0: nobody is killed
  bool rollbackJournal = false;  // as on network drives
};

// Runs the load, checks what it left and writes a report. True when nothing was lost, doubled,
// torn, damaged or refused, and no process ended by itself before its time.
bool RunLoad(const Plan& plan, std::ostream& report);

}  // namespace stress
