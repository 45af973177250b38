// All record files of the configured office, copied into another folder: as a backup, or for
// another record manager.
#pragma once

#include <filesystem>
#include <string>

#include "office/progress.h"

namespace office {

struct CopyOrder {
  std::filesystem::path target;
  std::string from;  // the record managers' libraries, as RecordManager takes them
  std::string to;
};

// Of the records that are copied, and of those that are compared.
struct CopyProgress {
  Progress copied;
  Progress compared;
};

// Copies the files with all their bytes, and compares both. While others work with the office, what
// they have changed meanwhile is copied again, until all files of the copy are what the office's
// were at one moment; when they change all the time, it fails. The target is a new folder, or one
// without these files; it gets all of them or, on failure, none. Returns how many there are.
std::size_t CopyOffice(const CopyOrder& order, const CopyProgress& progress);

}  // namespace office
