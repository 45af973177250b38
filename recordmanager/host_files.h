// What the record manager needs to know of files beyond what SQLite does with them; one
// implementation a host.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace recordmanager {

enum class FileKind { kMissing, kFile, kOther };

struct FileFacts {
  FileKind kind = FileKind::kMissing;
  // The same for every path to the same file, another one for a file that has taken its place.
  // Opaque bytes.
  std::string identity;
};

// A path as callers give it (Windows notation, the system's code page) as SQLite and the functions
// below take it: absolute, in the host's own notation, on Windows in UTF-8.
std::string HostPath(std::string_view path);

FileFacts InspectFile(const std::string& path);

// The path of the file itself, to which links or a mapped drive may lead; its log lies beside that.
// For hosts on which SQLite does not follow links. Returns `path` if the file's own is unknown.
std::string PathOfFile(const std::string& path);

// Whether a name is short enough for the endings that SQLite adds to it.
bool IsShortEnough(const std::string& path);

// Whether processes that use this file share their memory, which WAL needs: not so on network
// drives.
bool IsOnLocalDisk(const std::string& path);

// Whether an existing file can be opened just now: yes; no, because a program keeps others out of
// it; or no for a reason that lasts. On a host where programs cannot do that, never kDenied.
enum class Access { kFree, kDenied, kImpossible };
Access AccessTo(const std::string& path, bool toWrite);

// Whether no program keeps the file from being deleted. Always so on a host where none can.
bool IsDeletable(const std::string& path);

// kInvalidName: a name that the host gives no file.
enum class MoveResult { kDone, kTargetExists, kTargetInUse, kInvalidName, kFailed };

// Renames a file within its folder in one step, unless there is a file of that name, and sees to it
// that the new name outlives a loss of power.
MoveResult MoveFileTo(const std::string& from, const std::string& to);

// The same over a file that is there, unless somebody has it open.
MoveResult ReplaceFile(const std::string& from, const std::string& to);

// Whether another process has the file open, so that it cannot be replaced. Waits for a program
// that only looks at it.
bool IsInUse(const std::string& path);

// Says of a file that this process has it open, and by which name: for ReplaceFile in other
// processes, where the host does not say it, and for whoever opens the file by another name. To be
// ended after whatever has the file open, or at once in a copy of the process.
class UseMark {
 public:
  UseMark() = default;
  UseMark(const UseMark&) = delete;
  UseMark& operator=(const UseMark&) = delete;
  ~UseMark() { End(); }

  // False when the file is just being replaced, or is in use by another of its names (hard links),
  // or a killed program has left a log or a journal beside one: each name has its own.
  bool Set(const std::string& path);
  void End();

 private:
  std::intptr_t file_ = -1;
};

void RemoveFile(const std::string& path);

// Whether this process may make files in the folder of `path`.
bool CanMakeFilesBeside(const std::string& path);

// Whether a log that this process made beside the file could be used by everybody who may write it.
bool CanMakeLogFor(const std::string& path);

// Has SQLite use the host's files with more care than it does by itself. To be called before it
// opens any.
void AdaptFileCalls();

// Whether the disk has no room for one more file in the folder of `path`, where the host tells.
bool HasNoRoomBeside(const std::string& path);

// Whether nothing can be opened any more because too much is open, in this process or altogether.
bool AreFileHandlesUsedUp();

// Whether the process has no room left for the memory that the users of a log share.
bool AreAddressesUsedUp();

}  // namespace recordmanager
