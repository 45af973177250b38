#include "recordmanager/journal_end.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace recordmanager {
namespace {

// Lies behind the real file system's part of an open file, which has the methods of it.
struct Journal {
  sqlite3_io_methods methods;
  const sqlite3_io_methods* real;
};

std::size_t PlaceBehind(const sqlite3_vfs& real) {
  constexpr std::size_t kUnit = alignof(Journal);
  return (static_cast<std::size_t>(real.szOsFile) + kUnit - 1) / kUnit * kUnit;
}

int Truncate(sqlite3_file* journal, sqlite3_int64 size) {
  constexpr std::array<char, 28> kNoHead{};
  const sqlite3_io_methods& real = *reinterpret_cast<const Journal*>(journal->pMethods)->real;
  sqlite3_int64 left = 0;
  int result = real.xTruncate(journal, size);
  if (result == SQLITE_OK && size == 0) result = real.xFileSize(journal, &left);
  if (result != SQLITE_OK || left == 0) return result;
  return real.xWrite(journal, kNoHead.data(), static_cast<int>(kNoHead.size()), 0);
}

}  // namespace

int FileSizeWithEnd(const sqlite3_vfs& real) {
  return static_cast<int>(PlaceBehind(real) + sizeof(Journal));
}

void EndSurely(sqlite3_file* journal, const sqlite3_vfs& real) {
  auto* const behind =
      reinterpret_cast<Journal*>(reinterpret_cast<std::byte*>(journal) + PlaceBehind(real));
  *behind = {*journal->pMethods, journal->pMethods};
  behind->methods.xTruncate = &Truncate;
  journal->pMethods = &behind->methods;
}

bool IsJournal(const char* name) { return std::string_view(name).ends_with("-journal"); }

int EndInPlace(sqlite3_vfs& files, const char* name) {
  std::vector<std::max_align_t> memory(
      static_cast<std::size_t>(files.szOsFile) / sizeof(std::max_align_t) + 1);
  auto* const journal = reinterpret_cast<sqlite3_file*>(memory.data());
  int flags = 0;
  int result =
      files.xOpen(&files, name, journal, SQLITE_OPEN_READWRITE | SQLITE_OPEN_MAIN_JOURNAL, &flags);
  if (result != SQLITE_OK) return result;
  result = journal->pMethods->xTruncate(journal, 0);
  if (result == SQLITE_OK) result = journal->pMethods->xSync(journal, SQLITE_SYNC_FULL);
  journal->pMethods->xClose(journal);
  return result;
}

}  // namespace recordmanager
