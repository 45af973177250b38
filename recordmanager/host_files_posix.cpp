#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
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

// Where SQLite locks a database, and a place behind that.
constexpr off_t kSqliteLocks = 0x40000000;
constexpr off_t kUseMark = kSqliteLocks + 1024;
constexpr off_t kToTheEnd = 0;

// A lock that belongs to the handle: SQLite's own belong to the process, and end whenever it
// unlocks the whole file, which it does after each read.
bool Lock(int file, short kind, off_t start, off_t length) {
  struct flock lock {};
  lock.l_type = kind;
  lock.l_whence = SEEK_SET;
  lock.l_start = start;
  lock.l_len = length;
  return fcntl(file, F_OFD_SETLK, &lock) == 0;
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

void SyncFolderOf(const std::string& path) {
  const int folder = open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) {
    fsync(folder);
    close(folder);
  }
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
  // The kernel's numbers of devices have 32 bits; so short a text needs no memory.
  const auto device = static_cast<std::uint32_t>(facts.st_dev);
  std::string identity(sizeof device + sizeof facts.st_ino, '\0');
  std::memcpy(identity.data(), &device, sizeof device);
  std::memcpy(identity.data() + sizeof device, &facts.st_ino, sizeof facts.st_ino);
  return {FileKind::kFile, std::move(identity)};
}

bool IsOnLocalDisk(const std::string& path) {
  struct statfs facts {};
  if (statfs(path.c_str(), &facts) != 0) return false;
  return std::find(kRemoteFileSystems.begin(), kRemoteFileSystems.end(),
                   static_cast<std::uint32_t>(facts.f_type)) == kRemoteFileSystems.end();
}

Access AccessTo(const std::string& /*path*/, bool /*toWrite*/) { return Access::kImpossible; }

MoveResult MoveFileTo(const std::string& from, const std::string& to) {
  int result = renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
  if (result != 0 && errno == EINVAL) {
    // A file system without that flag; most have links.
    result = link(from.c_str(), to.c_str());
    if (result == 0) unlink(from.c_str());
  }
  if (result != 0) return errno == EEXIST ? MoveResult::kTargetExists : MoveResult::kFailed;
  SyncFolderOf(to);
  return MoveResult::kDone;
}

// Whoever has the file open has a use mark on it; while this process has that place, nobody can
// open the file any more. Unless somebody else has replaced it before.
MoveResult ReplaceFile(const std::string& from, const std::string& to) {
  const int target = open(to.c_str(), O_RDWR | O_CLOEXEC);
  if (target < 0) return MoveResult::kFailed;
  MoveResult result = MoveResult::kTargetInUse;
  if (Lock(target, F_WRLCK, kSqliteLocks, kToTheEnd) && IsAt(target, to)) {
    const bool isDone = std::rename(from.c_str(), to.c_str()) == 0;
    if (isDone) SyncFolderOf(to);
    result = isDone ? MoveResult::kDone : MoveResult::kFailed;
  }
  close(target);
  return result;
}

bool UseMark::Set(const std::string& path) {
  file_ = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  return file_ < 0 || Lock(file_, F_RDLCK, kUseMark, 1) || (errno != EAGAIN && errno != EACCES);
}

void UseMark::End() {
  if (file_ >= 0) close(std::exchange(file_, -1));
}

void RemoveFile(const std::string& path) { unlink(path.c_str()); }

bool CanMakeFilesBeside(const std::string& path) {
  return faccessat(AT_FDCWD, FolderOf(path).c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

bool AreFileHandlesUsedUp() {
  const int spare = open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (spare < 0) return errno == EMFILE || errno == ENFILE;
  close(spare);
  return false;
}

}  // namespace recordmanager
