// What SQLite asks of the system, where it should ask for more.
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <bit>
#include <cerrno>

#include "recordmanager/host_files.h"

namespace recordmanager {
namespace {

// In the place of a log, a pipe would keep whoever opens it waiting for its other end, and a device
// would take what is written and give nothing back. SQLite reads devices for random numbers.
bool IsNoFile(const char* path, int flags) {
  struct stat facts {};
  if (stat(path, &facts) != 0) return false;
  return S_ISFIFO(facts.st_mode) || (S_ISCHR(facts.st_mode) && (flags & O_ACCMODE) != O_RDONLY);
}

// In a folder where nobody may delete what others have made, the kernel may refuse to make a file
// that another user has made already, as a log.
int Open(const char* path, int flags, int rights) {
  if (IsNoFile(path, flags)) {
    errno = EISDIR;  // so that SQLite does not try again, to read only
    return -1;
  }
  const int made = open(path, flags, rights);
  if (made >= 0 || errno != EACCES || (flags & (O_CREAT | O_EXCL)) != O_CREAT) return made;
  const int found = open(path, flags & ~O_CREAT);
  if (found < 0) errno = EACCES;
  return found;
}

// A quota, or the largest size that the file system or the process allows, is a full disk to the
// user, too; SQLite would take it for a faulty one.
ssize_t Outcome(ssize_t written) {
  if (written < 0 && (errno == EDQUOT || errno == EFBIG)) errno = ENOSPC;
  return written;
}

// The memory that users of a log share grows by a zero as the last byte of each page. Where the
// disk's blocks are smaller than that, it would have holes; and whoever writes to a hole while the
// disk is full is killed.
ssize_t Write(int file, const void* bytes, std::size_t count, off_t place) {
  constexpr std::array<char, 4096> kPage{};
  const off_t begin = place + 1 - std::ssize(kPage);
  if (count != 1 || begin < 0 || begin % std::ssize(kPage) != 0) {
    return Outcome(pwrite(file, bytes, count, place));
  }
  const ssize_t written = Outcome(pwrite(file, kPage.data(), kPage.size(), begin));
  if (written >= 0 && written < std::ssize(kPage)) errno = ENOSPC;
  return written == std::ssize(kPage) ? 1 : -1;
}

// Logs and their memory are given to the file's owner and group by root only. What others make
// should at least be the group's: it may be by the group that the file's users may write it.
uid_t RootsId() { return 0; }
int GiveAway(int file, uid_t owner, gid_t group) {
  constexpr auto kSame = static_cast<uid_t>(-1);
  return fchown(file, geteuid() == 0 ? owner : kSame, group);
}

}  // namespace

void AdaptFileCalls() {
  sqlite3_vfs* files = sqlite3_vfs_find("unix");
  if (files == nullptr) return;
  files->xSetSystemCall(files, "open", std::bit_cast<sqlite3_syscall_ptr>(&Open));
  files->xSetSystemCall(files, "pwrite", std::bit_cast<sqlite3_syscall_ptr>(&Write));
  files->xSetSystemCall(files, "geteuid", std::bit_cast<sqlite3_syscall_ptr>(&RootsId));
  files->xSetSystemCall(files, "fchown", std::bit_cast<sqlite3_syscall_ptr>(&GiveAway));
}

}  // namespace recordmanager
