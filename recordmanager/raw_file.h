// The bytes of a database, or of a file beside it, as they lie there: read without the locks, the
// log and the journal that belong to reading a database, but through the same file system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "recordmanager/sql.h"

struct sqlite3_file;
struct sqlite3_vfs;

namespace recordmanager {

class RawFile {
 public:
  // A file that SQLite has open, and keeps open.
  explicit RawFile(sqlite3_file* file) : file_(file) {}

  // The file `name`, opened for reading; `kind` is SQLite's flag for what it is.
  RawFile(sqlite3_vfs& files, const char* name, int kind);
  RawFile(const RawFile&) = delete;
  RawFile& operator=(const RawFile&) = delete;
  ~RawFile();

  // Status 9 when the file ends before all bytes are read; the others are 0 then.
  int Read(std::int64_t offset, std::span<std::uint8_t> bytes) const;

  int Size(std::int64_t& bytes) const;

 private:
  std::vector<std::max_align_t> memory_;  // of a file of our own
  sqlite3_file* file_ = nullptr;
  int opened_ = 0;
};

// The error in a status of Read, if it is one: the end of the file is none.
inline int ErrorOf(int status) {
  return status == btrieve::kEndOfFile ? btrieve::kSuccess : status;
}

}  // namespace recordmanager
