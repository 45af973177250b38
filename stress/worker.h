// One process of a trial: a workstation that writes, or reads, until its time is over or somebody
// kills it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "testkit/process.h"

namespace stress {

// What a worker does.
inline constexpr const char* kPrepare = "prepare";  // the office that such slots need
inline constexpr const char* kNumbers = "numbers";  // GetDokuNr, all for one case
inline constexpr const char* kRecords = "records";  // items of its slots, by BTRCALL
inline constexpr const char* kRead = "read";  // items beside their keepers; with pauses if it stays
inline constexpr const char* kLeave = "leave";  // records, by a thread that the process's end meets
inline constexpr const char* kFork = "fork";    // records, beside a child that keeps the next slot
inline constexpr const char* kCreate = "create";  // records of files that all would make: kRaces

struct Assignment {
  std::string task;
  std::filesystem::path folder;
  int slot = 0;
  int slots = 1;  // from its slot on; for a reader, of all
  int milliseconds = 0;
  bool stays = false;  // when all is done and closed, until it is killed
};

// This program as a worker: the command line's first argument, what Start puts behind it, and what
// then is done.
inline constexpr const char* kWorker = "--worker";
testkit::Process Start(const Assignment& its);
void WorkAs(const std::vector<std::string>& commandLine);

// Throws a Fault unless a worker has ended with this code as it should.
void ExpectGood(int exitCode);

// A file that is there when all was done and closed.
std::filesystem::path EndMarkOf(const Assignment& its);

// Each race is run in a folder of its own, from the moment when its office is there.
inline constexpr int kRaces = 40;
std::filesystem::path RaceIn(const std::filesystem::path& folder, int race);

}  // namespace stress
