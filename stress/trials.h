// The trials. Each works in a folder of its own, writes a report, and returns true when it has
// found nothing; then the folder is gone.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <vector>

namespace stress {

// Many processes on one office, any of which may be killed at any moment; and what is left of it.
// Sound when nothing was lost, doubled, torn, damaged or refused, and no process ended by itself
// before its time.
struct Plan {
  std::filesystem::path folder;  // does not exist
  int seconds = 5;
  int processes = 10;
  int pause = 25;  // milliseconds between two kills, on the average; 0: nobody is killed
  bool rollbackJournal = false;  // as on network drives
};
bool RunLoad(const Plan& plan, std::ostream& report);

// A record file on a disk that fails: full, with an error, or out of reach, at every request of an
// ordinary day's work in turn. Sound when whatever failed said so by one of the published statuses,
// nothing acknowledged was lost, nothing was done by halves, no file was damaged and the next
// process could work at once.
bool RunFaults(const std::filesystem::path& folder, std::ostream& report);

// The power goes while two workstations write a record file, again and again. The report names the
// seeds that find something: each alone finds the same again. Sound when nothing acknowledged was
// lost, doubled, torn or damaged.
struct PowerPlan {
  std::filesystem::path folder;
  unsigned seed = 0;
  int losses = 1000;
  bool ignoreSync = false;  // as a disk would that does not do what it says
};
bool RunPower(const PowerPlan& plan, std::ostream& report);

// Short trials around one record file, each of a few processes, repeated until the time is over:
// backups that are put back; hosts that end while a thread is at work; pauses within walks; races
// to create a file; forks. The folder of the first round that found something is left behind.
class Round;
struct Trial {
  const char* name;
  const char* about;
  void (*run)(Round& round);
};
extern const std::vector<Trial> kTrials;
bool RunTrial(const Trial& trial, const std::filesystem::path& folder, int seconds,
              std::ostream& report);

}  // namespace stress
