// Where a worker keeps its items: as follow-ups, through the library's exports, or as records of a
// file of their own, through the record manager's entry point. An item is a number; every byte of
// its record follows from it and from the slot that it belongs to, so that a torn record shows.
// Only one worker at a time writes to a slot.
#pragma once

#include <filesystem>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>

#include "btrieve/client.h"

namespace stress {

// What must never happen.
class Fault : public std::runtime_error {
 public:
  // Also the exit codes of workers; kCrashed is any other. kGrown: a log that nobody empties.
  enum Kind { kLost = 101, kDoubled, kTorn, kDamaged, kRefused, kGrown, kCrashed };

  Fault(Kind faultKind, const std::string& what) : std::runtime_error(what), kind(faultKind) {}

  Kind kind;
};

class Store {
 public:
  virtual ~Store() = default;

  // Each throws a Fault when it is refused.
  virtual void Add(int item) = 0;
  virtual void Replace(int item, int by) = 0;
  virtual void Remove(int item) = 0;

  // The slot's items; each record is looked at byte by byte.
  virtual std::set<int> Items() = 0;

  // Whether Items walks along them once. What reads them one by one, by their positions, misses
  // others when one goes meanwhile.
  virtual bool ReadsInOneWalk() const = 0;
};

// The case that a slot stands for, in an office with at least as many cases as slots.
std::string CaseNumberOf(int slot);

std::unique_ptr<Store> OpenFollowUps(int slot);

// The records' file in the office's folder.
inline constexpr const char* kRecordsFile = "STRESS.KRV";

// The record manager that the library loads, there until the very end of the process.
const btrieve::EntryPoint& InstalledManager();

void CreateRecords(const std::filesystem::path& office,
                   const btrieve::EntryPoint& manager = InstalledManager());
std::unique_ptr<Store> OpenRecords(const std::filesystem::path& office, int slot,
                                   const btrieve::EntryPoint& manager = InstalledManager());

// A record of that file beside the items: a counter that all workers add to.
void StartCounter(const std::filesystem::path& office);
int CounterValue(const std::filesystem::path& office);
void IncrementCounter(const std::filesystem::path& office);

}  // namespace stress
