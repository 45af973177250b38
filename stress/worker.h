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

struct Assignment {
  std::string task;
  std::filesystem::path folder;
  int slot = 0;
  int slots = 1;
  int milliseconds = 0;  // with none, a writer only checks that all is there that it knows of
};

// On a command line.
std::vector<std::string> ArgumentsOf(const Assignment& assignment);
Assignment AssignmentOf(const std::vector<std::string>& arguments);

// Where the record files lie, and what the workers write down in the same folder: what they did,
// with kDone (history.h) behind each write that was acknowledged, "CASE NUMBER" for document
// numbers and, at a counter's end, kCounted and its value; and what they measured, "step" and
// "longest N" in microseconds.
std::filesystem::path OfficeIn(const std::filesystem::path& folder);
std::filesystem::path JournalOf(const Assignment& assignment);
std::filesystem::path MeasuresOf(const Assignment& assignment);
inline constexpr const char* kCounted = "counted ";

// Makes the office that `slots` slots need.
void Prepare(const std::filesystem::path& folder, int slots);

// Throws the first Fault.
void Work(const Assignment& assignment);

}  // namespace stress
