// Where a worker keeps its items: as follow-ups, through the library's exports, or as records of a
// file of their own, through the record manager's entry point. An item is a number; every byte of
// its record follows from it and from the slot that it belongs to, so that a torn record shows.
// Only one worker at a time writes to a slot.
#pragma once

#include <filesystem>
#include <memory>
#include <set>
#include <string>

#include "btrieve/client.h"
#include "stress/findings.h"

namespace stress {

class Store {
 public:
  virtual ~Store() = default;

  // Each throws a Refusal when it is refused.
  virtual void Add(int item) = 0;
  virtual void Replace(int item, int by) = 0;
  virtual void Remove(int item) = 0;

  // The slot's items; each record is looked at byte by byte.
  virtual std::set<int> Items() = 0;
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

// Looks at a record file from behind the record manager: throws a Fault when its pages, its indexes
// or a key of a record are not sound. Nobody may have it open.
void ExpectUndamaged(const std::filesystem::path& file);

// Makes the file work with a rollback journal, as record files on network drives do. Nobody may
// have it open.
void UseRollbackJournal(const std::filesystem::path& file);

}  // namespace stress
