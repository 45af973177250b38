// A worker's items: records of a file of their own, written through the record manager's entry
// point. An item is a number; every byte of its record follows from it and from the slot that
// it belongs to, so that a torn record shows. Only one worker at a time writes to a slot.
#pragma once

#include <filesystem>
#include <memory>
#include <set>

#include "btrieve/client.h"
#include "stress/findings.h"

namespace stress {

// The records' file in the office's folder.
inline constexpr const char* kRecordsFile = "STRESS.KRV";

// The record manager that the library loads, there until the very end of the process.
const btrieve::EntryPoint& InstalledManager();

void CreateRecords(const std::filesystem::path& office,
                   const btrieve::EntryPoint& manager = InstalledManager());

class Store {
 public:
  Store(std::filesystem::path office, int slot, btrieve::EntryPoint manager = InstalledManager());
  Store(Store&& other) noexcept;
  ~Store();

  // Each throws a Refusal when it is refused.
  void Add(int item);
  void Replace(int item, int by);
  void Remove(int item);

  // The slot's items; each record is looked at byte by byte.
  std::set<int> Items();

 private:
  class Cursor;

  void Rewrite(int item, int by);

  std::filesystem::path office_;
  int slot_;
  btrieve::EntryPoint manager_;
  std::unique_ptr<Cursor> walker_;
  std::size_t turn_ = 0;
};

// Looks at a record file from behind the record manager: throws a Fault when its pages or indexes
// are not sound. Nobody may have it open.
void ExpectUndamaged(const std::filesystem::path& file);

// Makes the file work with a rollback journal, as record files on network drives do. Nobody may
// have it open.
void UseRollbackJournal(const std::filesystem::path& file);

}  // namespace stress
