// A file system that lies over the host's real one, for the files of this program's own SQLite, and
// is asked before each request.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <span>

namespace stress {

struct Request {
  int kind;  // by the failure that SQLite knows for it; opening is SQLITE_CANTOPEN
  const char* path = nullptr;  // when it opens, deletes or looks for one; or else
  const sqlite3_file* file = nullptr;
  std::span<const char> bytes{};  // what is written
  std::int64_t place = 0;         // where, or the size that is left
};

// One at a time. Letting a lock go is no request, as that cannot fail.
class HookedFiles {
 public:
  HookedFiles();
  virtual ~HookedFiles();
  HookedFiles(const HookedFiles&) = delete;
  HookedFiles& operator=(const HookedFiles&) = delete;

  // SQLITE_OK: the request is carried out; otherwise it fails so.
  virtual int Answer(const Request& request) = 0;

  // A file is open now.
  virtual void NoteOpened(const sqlite3_file* /*file*/, const char* /*path*/) {}
};

}  // namespace stress
