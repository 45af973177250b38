// A worker's items: records of a file of their own, written through a record manager's entry point.
// An item is a number; every byte of its record follows from it and from the slot that it belongs
// to, so that a torn record shows. Only one worker at a time writes to a slot.
#pragma once

#include <filesystem>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>

#include "btrieve/client.h"

namespace stress {

// What a trial looks for. The first one ends it.
class Fault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A call that was refused with a status; some trials allow that.
class Refusal : public Fault {
 public:
  Refusal(const std::string& call, int itsStatus)
      : Fault(call + " gave " + std::to_string(itsStatus)), status(itsStatus) {}

  int status;
};

// Where the record files of a trial's folder lie, and the one for items.
inline std::filesystem::path OfficeIn(const std::filesystem::path& folder) {
  return folder / "office";
}
inline std::filesystem::path RecordsIn(const std::filesystem::path& folder) {
  return OfficeIn(folder) / "STRESS.KRV";
}

// Makes the file for items; throws a Refusal.
void CreateRecords(const std::filesystem::path& file, const btrieve::EntryPoint& manager);

// The same in a trial's folder, by a record manager that has left when this returns.
void MakeRecordsIn(const std::filesystem::path& folder);

class Store {
 public:
  Store(std::filesystem::path file, int slot, btrieve::EntryPoint manager)
      : file_(std::move(file)), slot_(slot), manager_(std::move(manager)) {}

  // Each throws a Refusal when it is refused.
  void Add(int item);
  void Replace(int item, int by);
  void Remove(int item);

  // The slot's items; each record is looked at byte by byte.
  std::set<int> Items();

 private:
  class Cursor;

  std::filesystem::path file_;
  int slot_;
  btrieve::EntryPoint manager_;
  std::shared_ptr<Cursor> walker_;
  std::size_t turn_ = 0;
};

// Looks at a record file from behind the record manager: throws a Fault when its pages or indexes
// are not sound. Nobody may have it open.
void ExpectUndamaged(const std::filesystem::path& file);

// Makes the file work with a rollback journal, as record files on network drives do. Nobody may
// have it open.
void UseRollbackJournal(const std::filesystem::path& file);

}  // namespace stress
