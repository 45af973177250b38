#include "recordmanager/leftovers.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <string>
#include <string_view>

#include "recordmanager/raw_file.h"
#include "recordmanager/state_page.h"

namespace recordmanager {
namespace {

// Places and marks from SQLite's documentation of its files, where numbers are big-endian.
constexpr std::uint32_t kLogMark = 0x377F0682;  // and checksums over little-endian words
constexpr std::size_t kLogHeadSize = 32;
constexpr std::size_t kFrameHeadSize = 24;
constexpr std::string_view kJournalMark = "\xD9\xD5\x05\xF9\x20\xA1\x63\xD7";
constexpr std::size_t kJournalHeadSize = 28;
constexpr std::size_t kNoncePlace = 12;
constexpr std::size_t kNonceSize = 4;

// While others write, the files change between two looks at them. What does not fit after so many
// looks never will.
constexpr int kLooks = 20;

// The log's checksum over all that came before.
class Checksum {
 public:
  void Add(View bytes) {
    for (; bytes.size() >= 8; bytes = bytes.subspan(8)) {
      std::array<std::uint32_t, 2> words{};
      std::memcpy(words.data(), bytes.data(), sizeof words);
      first_ += words[0] + second_;
      second_ += words[1] + first_;
    }
  }
  bool StandsAt(View bytes, std::size_t offset) const {
    return NumberAt(bytes, offset) == first_ && NumberAt(bytes, offset + 4) == second_;
  }

 private:
  std::uint32_t first_ = 0;
  std::uint32_t second_ = 0;
};

// Whether the log continues the file, as far as SQLite would play it in: to the last commit before
// the first frame that does not belong to it.
int FitLog(const RawFile& log, const Base& base, bool& fits) {
  constexpr std::size_t kHeadSum = 24;
  constexpr std::size_t kFrameSum = 16;
  constexpr std::size_t kSalt = 8;
  fits = true;
  Bytes head(kLogHeadSize);
  Checksum sum;
  if (const int status = log.Read(0, head); status != btrieve::kSuccess) return ErrorOf(status);
  sum.Add(View(head).first(kHeadSum));
  if (NumberAt(head, 0) != kLogMark || !sum.StandsAt(head, kHeadSum)) return btrieve::kSuccess;
  const std::uint32_t pageSize = NumberAt(head, 8);
  if (pageSize < kSmallestPage || pageSize > kLargestPage) return btrieve::kSuccess;
  Bytes frame(kFrameHeadSize + pageSize);
  bool continuesFirst = base.IsOfFirstFormat();
  bool continuesState = false;
  bool isFirst = true;
  std::set<std::uint32_t> missing;
  for (auto offset = static_cast<std::int64_t>(head.size());; offset += std::ssize(frame)) {
    const int status = log.Read(offset, frame);
    if (status != btrieve::kSuccess) return ErrorOf(status);
    sum.Add(View(frame).first(kSalt));
    sum.Add(View(frame).subspan(kFrameHeadSize));
    const bool belongs = std::equal(head.begin() + 16, head.begin() + 24, frame.begin() + kSalt);
    if (!belongs || !sum.StandsAt(frame, kFrameSum)) return btrieve::kSuccess;
    if (NumberAt(frame, 0) == kStatePage) {
      const States page = States::On(frame);
      const StateNumber& now = base.states.state;
      continuesFirst = continuesFirst && (!isFirst || page.before == StateNumber{} ||
                                          !States::AreOn(View(frame).subspan(kFrameHeadSize)));
      continuesState = continuesState || page.state == now || (isFirst && page.before == now);
      isFirst = false;
    }
    if (base.Misses(NumberAt(frame, 0))) missing.insert(NumberAt(frame, 0));
    if (NumberAt(frame, 4) != 0) {  // the last frame of a commit
      fits = (continuesFirst || continuesState) && missing.size() == base.MissingPages();
    }
  }
}

// Switching a file between log and journal changes the mode's bytes in the first page and the count
// of its writes, and nothing else.
bool DifferInModeOnly(View page, View other) {
  const auto equal = [&](std::size_t begin, std::size_t end) {
    return std::memcmp(page.data() + begin, other.data() + begin, end - begin) == 0;
  };
  return page.size() == other.size() && equal(0, 18) && equal(20, 24) && equal(28, 92) &&
         equal(100, page.size());
}

// Whether the journal leads back from what the file is. Its first page is that of the states, as
// each transaction begins with it, but for changes of the mode.
int FitJournal(const RawFile& journal, const Base& base, bool& fits) {
  constexpr std::size_t kPagesPlace = 16;
  constexpr std::size_t kSectorPlace = 20;
  fits = true;
  Bytes head(kJournalHeadSize);
  const int status = journal.Read(0, head);
  if (status != btrieve::kSuccess || !StartsWith(head, kJournalMark)) return ErrorOf(status);
  Bytes entry(sizeof kStatePage + base.firstPage.size());
  fits = base.IsOfFirstFormat();
  if (base.firstPage.empty()) return btrieve::kSuccess;
  const int entryStatus = journal.Read(NumberAt(head, kSectorPlace), entry);
  if (entryStatus != btrieve::kSuccess) return ErrorOf(entryStatus);
  const View page = View(entry).subspan(sizeof kStatePage);
  const bool isFirstFormat = base.IsOfFirstFormat();
  if (NumberAt(entry, 0) == kStatePage) {
    const StateNumber& now = base.states.state;
    fits = (isFirstFormat && !States::AreOn(page)) || States::On(page).state == now ||
           std::equal(now.end() - kNonceSize, now.end(), head.begin() + kNoncePlace);
  } else {
    fits = isFirstFormat || (NumberAt(entry, 0) == 1 && DifferInModeOnly(page, base.firstPage));
  }
  fits = fits && base.pagesThere >= NumberAt(head, kPagesPlace);  // no transaction shortens it
  return btrieve::kSuccess;
}

// The file of a connection, and what may lie beside it.
class Surroundings {
 public:
  explicit Surroundings(sqlite3* database) {
    sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file_);
    sqlite3_file_control(database, "main", SQLITE_FCNTL_VFS_POINTER, &files_);
    const char* name = sqlite3_db_filename(database, "main");
    log_ = sqlite3_filename_wal(name);
    journal_ = sqlite3_filename_journal(name);
  }

  bool LackLog() const {
    constexpr std::int64_t kModePlace = 18;
    constexpr std::uint8_t kLogged = 2;
    std::array<std::uint8_t, 1> mode{};
    // Users of a log share memory, also while the log is empty and so, to SQLite, not there.
    const std::string memory = std::string(sqlite3_filename_database(log_)) + "-shm";
    return RawFile(file_).Read(kModePlace, mode) == btrieve::kSuccess && mode[0] == kLogged &&
           !IsThere(log_) && !IsThere(journal_) && !IsThere(memory.c_str());
  }

  int ReadBase(Base& base) const { return base.Read(RawFile(file_)); }

  // `misfit` receives the name of what does not fit, null when all does.
  int Look(Base& base, const char*& misfit) const {
    misfit = nullptr;
    if (!IsThere(log_) && !IsThere(journal_)) return btrieve::kSuccess;
    int status = ReadBase(base);
    if (status == btrieve::kSuccess) status = LookAt(log_, SQLITE_OPEN_WAL, &FitLog, base, misfit);
    if (status != btrieve::kSuccess || misfit != nullptr) return status;
    return LookAt(journal_, SQLITE_OPEN_MAIN_JOURNAL, &FitJournal, base, misfit);
  }

  // Whether another file has taken its place since it was opened, and what lies beside is that
  // one's.
  bool IsReplaced() const {
    int isReplaced = 0;
    file_->pMethods->xFileControl(file_, SQLITE_FCNTL_HAS_MOVED, &isReplaced);
    return isReplaced != 0;
  }

  // Removes what does not fit while nobody has the file open; does nothing when somebody has.
  int Clear() const {
    const sqlite3_io_methods& methods = *file_->pMethods;
    int result = methods.xLock(file_, SQLITE_LOCK_SHARED);
    if (result == SQLITE_OK) result = methods.xLock(file_, SQLITE_LOCK_EXCLUSIVE);
    int status = result == SQLITE_BUSY ? btrieve::kSuccess : StatusOf(result);
    if (result == SQLITE_OK) {
      Base base;
      const char* misfit = nullptr;
      status = IsReplaced() ? btrieve::kFileInUse : Look(base, misfit);
      if (status == btrieve::kSuccess && misfit != nullptr && base.IsUnwritten()) {
        status = Remove(misfit);
      }
    }
    methods.xUnlock(file_, SQLITE_LOCK_NONE);
    return status;
  }

 private:
  using Fit = int(const RawFile& leftover, const Base& base, bool& fits);

  bool IsThere(const char* name) const {
    int isThere = 0;
    return files_->xAccess(files_, name, SQLITE_ACCESS_EXISTS, &isThere) != SQLITE_OK ||
           isThere != 0;
  }

  int LookAt(const char* name, int kind, Fit* fit, const Base& base, const char*& misfit) const {
    if (!IsThere(name)) return btrieve::kSuccess;
    bool fits = true;
    const int status = fit(RawFile(*files_, name, kind), base, fits);
    if (!IsThere(name)) return btrieve::kSuccess;
    if (!fits) misfit = name;
    const bool isFolder = status == btrieve::kIoError && InspectFile(name).kind == FileKind::kOther;
    return isFolder ? btrieve::kPermissionError : status;
  }

  int Remove(const char* name) const {
    const int result = files_->xDelete(files_, name, 1);
    return result == SQLITE_IOERR_DELETE_NOENT ? btrieve::kSuccess : StatusOf(result);
  }

  sqlite3_file* file_ = nullptr;
  sqlite3_vfs* files_ = nullptr;
  const char* log_ = nullptr;
  const char* journal_ = nullptr;
};

}  // namespace

int CheckLeftovers(Connection& connection) {
  const Surroundings surroundings(connection.Handle());
  for (int look = 0; look < kLooks; ++look) {
    Base base;
    const char* misfit = nullptr;
    int status = surroundings.Look(base, misfit);
    if (status != btrieve::kSuccess || misfit == nullptr) return status;
    if (base.IsUnwritten() && !connection.IsReadOnly()) status = surroundings.Clear();
    if (status != btrieve::kSuccess) return status;
    PauseBriefly();
  }
  return surroundings.IsReplaced() ? btrieve::kFileInUse : btrieve::kLogError;
}

bool LacksLog(const Connection& connection) { return Surroundings(connection.Handle()).LackLog(); }

int NoteState(Connection& connection) {
  Base base;
  const int status = Surroundings(connection.Handle()).ReadBase(base);
  if (status != btrieve::kSuccess) return status;
  connection.SetStateOpened(base.states.state);
  return IsUnchanged(connection) ? btrieve::kSuccess : btrieve::kRecordInUse;
}

bool IsUnchanged(const Connection& connection) {
  const Surroundings surroundings(connection.Handle());
  Base base;
  // If another file has taken its place, the log there belongs to that one.
  return (surroundings.LackLog() || surroundings.IsReplaced()) &&
         surroundings.ReadBase(base) == btrieve::kSuccess &&
         base.states.state == connection.StateOpened();
}

StateNumber NumberState(const Connection& connection) {
  StateNumber number{};
  sqlite3_randomness(static_cast<int>(number.size()), number.data());
  sqlite3_file* journal = nullptr;
  if (!connection.IsLogged() &&
      sqlite3_file_control(connection.Handle(), "main", SQLITE_FCNTL_JOURNAL_POINTER, &journal) ==
          SQLITE_OK) {
    std::array<std::uint8_t, kNonceSize> nonce{};
    if (RawFile(journal).Read(kNoncePlace, nonce) == btrieve::kSuccess) {
      std::copy(nonce.begin(), nonce.end(), number.end() - nonce.size());
    }
  }
  return number;
}

}  // namespace recordmanager
