// The trials. Each works in a folder of its own, and throws the first Fault that it finds.
#pragma once

#include <filesystem>

namespace stress {

struct Options {
  std::filesystem::path folder;  // empty
  int seconds = 5;
  int processes = 10;
  int pause = 25;                // milliseconds between two kills, on the average
  bool rollbackJournal = false;  // as on network drives
  int losses = 1000;             // of power
  unsigned seed = 0;
  bool ignoreSync = false;  // as a disk would that does not do what it says
};

// Many processes on one office, any of which may be killed at any moment; and what is left of it.
// Nothing may be lost, doubled, torn, damaged or refused, and no process may end by itself before
// its time.
void RunLoad(const Options& options);

// A record file on a disk that fails: full, with an error, or out of reach, at every request of an
// ordinary day's work in turn. Whatever failed must say so by one of the published statuses,
// nothing acknowledged may be lost, nothing done by halves, and the next process can work at once.
void RunFaults(const Options& options);

// The power goes while two workstations write a record file, again and again. What a seed finds it
// finds alone again.
void RunPower(const Options& options);

// Rounds around one record file, each of a few processes, repeated until the time is over: backups
// that are put back; hosts that end while a thread is at work; pauses within walks; races to
// create a file; forks.
void RunRestore(const Options& options);
void RunLeave(const Options& options);
void RunPause(const Options& options);
void RunCreate(const Options& options);
void RunFork(const Options& options);

}  // namespace stress
