// One process of the load: a workstation that writes, or reads, until its time is over or somebody
// kills it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace stress {

// What a worker does.
inline constexpr const char* kNumbers = "numbers";       // GetDokuNr, for the cases of all slots
inline constexpr const char* kFollowUps = "follow-ups";  // items of its slot, by the exports
inline constexpr const char* kRecords = "records";       // items of its slot, by BTRCALL
inline constexpr const char* kCount = "count";           // the one counter
inline constexpr const char* kRead = "read";  // the items of all slots, by both, beside the writers
inline constexpr const char* kAllRecords = "all-records";  // items of all slots, by BTRCALL
inline constexpr const char* kTry = "try";      // the same, but a Fault only shows in the exit code
inline constexpr const char* kPause = "pause";  // records of all slots, with pauses within walks
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

// On a command line.
std::vector<std::string> ArgumentsOf(const Assignment& assignment);
Assignment AssignmentOf(const std::vector<std::string>& arguments);

// Where the record files lie, and what the workers write down in the same folder: what they did,
// with kDone (journal.h) behind each write that was acknowledged, "CASE NUMBER" for document
// numbers and, at a counter's end, kCounted and its value; and what they measured, "step" and
// "longest N" in microseconds, with kEnded when all was done and closed.
std::filesystem::path OfficeIn(const std::filesystem::path& folder);
std::filesystem::path JournalOf(const Assignment& assignment);
std::filesystem::path MeasuresOf(const Assignment& assignment);
inline constexpr const char* kCounted = "counted ";
inline constexpr const char* kEnded = "ended";

// Each race is run in a folder of its own, from the moment when its office is there.
inline constexpr int kRaces = 40;
std::filesystem::path RaceIn(const std::filesystem::path& folder, int race);

// Makes the office that `slots` slots need; without slots, only the file for records.
void Prepare(const std::filesystem::path& folder, int slots);

// Throws the first Fault.
void Work(const Assignment& assignment);

}  // namespace stress
