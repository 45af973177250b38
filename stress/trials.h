// Short trials around one record file, each of a few processes, repeated until the time is over.
#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <random>
#include <vector>

#include "stress/tally.h"
#include "stress/worker.h"
#include "testkit/process.h"

namespace stress {

class Round;

struct Trial {
  const char* name;
  const char* about;
  void (*run)(Round& round);
};

// Backups that are put back; hosts that end while a thread is at work; pauses within walks; races
// to create a file; forks.
extern const std::vector<Trial> kTrials;

// Writes a report. True when nothing was found; otherwise the folder of the first round that found
// something is left behind.
bool RunTrial(const Trial& trial, const std::filesystem::path& folder, int seconds,
              std::ostream& report);

}  // namespace stress
