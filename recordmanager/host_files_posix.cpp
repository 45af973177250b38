#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "recordmanager/host_files.h"

namespace recordmanager {
namespace {

// The kernel's numbers for file systems of other machines, and for those of user programs, which
// may be such.
constexpr std::array<std::uint32_t, 10> kRemoteFileSystems = {
    0x00006969,  // NFS
    0x0000517B,  // SMB
    0xFE534D42,  // SMB2
    0xFF534D42,  // CIFS
    0x01021997,  // 9P
    0x65735546,  // FUSE
    0x5346414F,  // AFS
    0x73757245,  // Coda
    0x00C36400,  // Ceph
    0x0BD00BD0,  // Lustre
};

// Where SQLite locks a database, and behind that the use marks: each name has a place of its own.
constexpr off_t kSqliteLocks = 0x40000000;
constexpr off_t kUseMarks = kSqliteLocks + 1024;
constexpr off_t kToTheEnd = 0;

// SQLite's own limit, with the terminator.
constexpr std::size_t kLongestPath = 512;

// A note on the file: the path by which it was opened last.
constexpr const char* kPathNote = "user.recordmanager.path";

struct flock LockOf(short kind, off_t start, off_t length) {
  struct flock lock {};
  lock.l_type = kind;
  lock.l_whence = SEEK_SET;
  lock.l_start = start;
  lock.l_len = length;
  return lock;
}

// A lock that belongs to the handle: SQLite's own belong to the process, and end whenever it
// unlocks the whole file, which it does after each read.
bool Lock(int file, short kind, off_t start, off_t length) {
  struct flock lock = LockOf(kind, start, length);
  return fcntl(file, F_OFD_SETLK, &lock) == 0;
}

bool IsLockedByOthers(int file, off_t start, off_t length) {
  struct flock lock = LockOf(F_WRLCK, start, length);
  return fcntl(file, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

// The kernel's numbers of devices have 32 bits; so short a text needs no memory.
std::string IdentityOf(const struct stat& facts) {
  const auto device = static_cast<std::uint32_t>(facts.st_dev);
  std::string identity(sizeof device + sizeof facts.st_ino, '\0');
  std::memcpy(identity.data(), &device, sizeof device);
  std::memcpy(identity.data() + sizeof device, &facts.st_ino, sizeof facts.st_ino);
  return identity;
}

bool IsAt(int file, const std::string& path) {
  struct stat open {};
  struct stat there {};
  return fstat(file, &open) == 0 && stat(path.c_str(), &there) == 0 &&
         open.st_dev == there.st_dev && open.st_ino == there.st_ino;
}

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

void SyncFolder(const std::string& path) {
  const int folder = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) {
    fsync(folder);
    close(folder);
  }
}

// The use mark's place for the name: the same for every path to it, another one for every other
// name, as good as certainly.
off_t PlaceOf(const std::string& path) {
  constexpr std::uint64_t kPlaces = std::uint64_t{1} << 60U;
  struct stat folder {};
  stat(FolderOf(path).c_str(), &folder);
  std::uint64_t place = 0xCBF29CE484222325U;
  for (const char letter : IdentityOf(folder) + path.substr(path.rfind('/') + 1)) {
    place = (place ^ static_cast<std::uint8_t>(letter)) * 0x100000001B3U;
  }
  return kUseMarks + 1 + static_cast<off_t>(place % kPlaces);
}

std::string NotedPath(int file) {
  std::array<char, PATH_MAX> noted{};
  const ssize_t length = fgetxattr(file, kPathNote, noted.data(), noted.size());
  return {noted.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
}

// Whether a log or a journal begins as one that counts, which is not with a zero.
bool HasLeftovers(const std::string& path) {
  bool found = false;
  for (const char* suffix : {"-wal", "-journal"}) {
    // A pipe with nobody at its other end is not waited for.
    const int left = open((path + suffix).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (left < 0) continue;
    char first = 0;
    found = found || (read(left, &first, 1) == 1 && first != 0);
    close(left);
  }
  return found;
}

}  // namespace

std::string HostPath(std::string_view path) {
  std::string result(path);
  std::replace(result.begin(), result.end(), '\\', '/');
  if (!result.starts_with('/')) {
    std::error_code ignored;
    result = std::filesystem::absolute(result, ignored).string();
  }
  return result;
}

FileFacts InspectFile(const std::string& path) {
  struct stat facts {};
  if (stat(path.c_str(), &facts) != 0) return {};
  if (!S_ISREG(facts.st_mode)) return {FileKind::kOther, {}};
  return {FileKind::kFile, IdentityOf(facts)};
}

std::string PathOfFile(const std::string& path) { return path; }

bool IsShortEnough(const std::string& path) {
  if (path.size() + std::strlen("-journal") >= kLongestPath) return false;
  struct stat ignored {};
  return stat((path + "-journal").c_str(), &ignored) == 0 || errno != ENAMETOOLONG;
}

bool IsOnLocalDisk(const std::string& path) {
  struct statfs facts {};
  if (statfs(path.c_str(), &facts) != 0) return false;
  return std::find(kRemoteFileSystems.begin(), kRemoteFileSystems.end(),
                   static_cast<std::uint32_t>(facts.f_type)) == kRemoteFileSystems.end();
}

Access AccessTo(const std::string& /*path*/, bool /*toWrite*/) { return Access::kImpossible; }

bool IsDeletable(const std::string& /*path*/) { return true; }

MoveResult MoveFileTo(const std::string& from, const std::string& to) {
  const std::string folder = FolderOf(to);  // while lack of memory leaves nothing half done
  int result = renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
  if (result != 0 && errno == EINVAL) {
    // A file system without that flag; most have links.
    result = link(from.c_str(), to.c_str());
    if (result == 0) unlink(from.c_str());
  }
  if (result != 0) return errno == EEXIST ? MoveResult::kTargetExists : MoveResult::kFailed;
  SyncFolder(folder);
  return MoveResult::kDone;
}

// Every program that has the file open has a use mark on it. While this process locks the marks'
// place, nobody else can open the file. Fails if another program has replaced the file before.
MoveResult ReplaceFile(const std::string& from, const std::string& to) {
  const std::string folder = FolderOf(to);
  const int target = open(to.c_str(), O_RDWR | O_CLOEXEC);
  if (target < 0) return MoveResult::kFailed;
  MoveResult result = MoveResult::kTargetInUse;
  if (Lock(target, F_WRLCK, kSqliteLocks, kToTheEnd) && IsAt(target, to)) {
    const bool isDone = std::rename(from.c_str(), to.c_str()) == 0;
    if (isDone) SyncFolder(folder);
    result = isDone ? MoveResult::kDone : MoveResult::kFailed;
  }
  close(target);
  return result;
}

bool IsInUse(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const bool inUse = file >= 0 && IsLockedByOthers(file, kSqliteLocks, kToTheEnd);
  if (file >= 0) close(file);
  return inUse;
}

// Of two programs that open the file by different names at once, at least one sees the other's
// mark.
bool UseMark::Set(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  file_ = file;
  if (file < 0) return errno != EMFILE && errno != ENFILE;
  const off_t place = PlaceOf(path);
  if (!Lock(file, F_RDLCK, place, 1)) return errno != EAGAIN && errno != EACCES;
  if (IsLockedByOthers(file, kUseMarks, place - kUseMarks) ||
      IsLockedByOthers(file, place + 1, kToTheEnd)) {
    return false;
  }
  const std::string noted = NotedPath(file);
  if (noted == path) return true;
  // Nothing there: the file was moved away from what lies beside.
  const bool isItsOwn = IsAt(file, noted) || InspectFile(noted).kind == FileKind::kMissing;
  if (isItsOwn && PlaceOf(noted) != place && HasLeftovers(noted)) return false;
  fsetxattr(file, kPathNote, path.data(), path.size(), 0);
  return true;
}

void UseMark::End() {
  if (file_ >= 0) close(static_cast<int>(std::exchange(file_, -1)));
}

void RemoveFile(const std::string& path) { unlink(path.c_str()); }

bool CanMakeFilesBeside(const std::string& path) {
  return faccessat(AT_FDCWD, FolderOf(path).c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

// It gets the file's rights, but belongs to whoever makes it.
bool CanMakeLogFor(const std::string& path) {
  return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

bool HasNoRoomBeside(const std::string& path) {
  const int probe = open(FolderOf(path).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR);
  if (probe < 0) return errno == ENOSPC || errno == EDQUOT;
  close(probe);
  return false;
}

bool AreFileHandlesUsedUp() {
  const int spare = open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (spare < 0) return errno == EMFILE || errno == ENFILE;
  close(spare);
  return false;
}

bool AreAddressesUsedUp() {
  constexpr std::size_t kOneView = 32768;
  void* const room = mmap(nullptr, kOneView, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (room != MAP_FAILED) munmap(room, kOneView);
  return room == MAP_FAILED;
}

}  // namespace recordmanager
