// One process of a trial: a workstation that writes, or reads, until its time is over or somebody
// kills it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "testkit/process.h"

namespace stress {

// What a worker does.
inline constexpr const char* kPrepare = "prepare";  // the file of records, and if `slots` an office
inline constexpr const char* kNumbers = "numbers";  // GetDokuNr, all for one case
inline constexpr const char* kRecords = "records";  // items of its slot, by BTRCALL
inline constexpr const char* kAllRecords = "all-records";  // the same of all slots
inline constexpr const char* kTry = "try";      // the same, and what it finds is not told
inline constexpr const char* kRead = "read";    // the records of all slots, beside their keepers
inline constexpr const char* kPause = "pause";  // the same, with pauses within walks
inline constexpr const char* kLeave = "leave";  // records, by a thread that the process's end meets
inline constexpr const char* kFork = "fork";  // records, beside a child that keeps the next slot's
inline constexpr const char* kCreate = "create";  // records of files that all would make: kRaces

struct Assignment {
  std::string task;
  std::filesystem::path folder;
  int slot = 0;
  int slots = 1;
  int milliseconds = 0;  // with none, a writer only checks that all is there that it knows of
  bool stays = false;    // when all is done and closed, until it is killed
};

// This program as a worker: the command line's first argument, what Start puts behind it, and what
// a worker that found something ends with.
inline constexpr const char* kWorker = "--worker";
testkit::Process Start(const Assignment& assignment);
int WorkAs(const std::vector<std::string>& commandLine);
inline constexpr int kFound = 101;
inline constexpr int kRefused = 102;

// Where the record files lie, and what the workers write down in the same folder: their journal,
// with kDone (keeper.h) for each write or look and "done NUMBER" for a document number; and a file
// that is there when all was done and closed.
std::filesystem::path OfficeIn(const std::filesystem::path& folder);
std::filesystem::path JournalOf(const Assignment& assignment);
std::filesystem::path EndMarkOf(const Assignment& assignment);

// Each race is run in a folder of its own, from the moment when its office is there.
inline constexpr int kRaces = 40;
std::filesystem::path RaceIn(const std::filesystem::path& folder, int race);

}  // namespace stress
