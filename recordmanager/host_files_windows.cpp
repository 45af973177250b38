#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/windows_api.h"
#include "recordmanager/host_files.h"
#include "recordmanager/patience.h"

namespace recordmanager {
namespace {

std::wstring Widen(std::string_view text, UINT codePage) {
  const int length = static_cast<int>(text.size());
  const int needed = MultiByteToWideChar(codePage, 0, text.data(), length, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(needed), L'\0');
  MultiByteToWideChar(codePage, 0, text.data(), length, wide.data(), needed);
  return wide;
}

std::string ToUtf8(const std::wstring& wide) {
  const int length = static_cast<int>(wide.size());
  const int needed =
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(needed), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, text.data(), needed, nullptr, nullptr);
  return text;
}

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

Access Probe(const std::wstring& path, DWORD access, DWORD shared = kShareAll) {
  const HANDLE file = CreateFileW(path.c_str(), access, shared, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    return GetLastError() == ERROR_SHARING_VIOLATION ? Access::kDenied : Access::kImpossible;
  }
  CloseHandle(file);
  return Access::kFree;
}

// Whether somebody has it open, also one who would let others delete it: Windows replaces it
// neither way.
bool IsOpen(const std::wstring& path) { return Probe(path, DELETE, 0) == Access::kDenied; }

std::wstring ToWide(const std::string& path) { return Widen(path, CP_UTF8); }

// Windows takes longer paths only when they are marked as complete. A new file has a name of its
// own at first (file_format.cpp), and SQLite adds endings.
std::wstring WithoutLimit(const std::wstring& full) {
  constexpr std::size_t kMostMore = sizeof "new-4294967295-journal";
  const bool isShort = full.size() + kMostMore < MAX_PATH;
  if (isShort || full.starts_with(LR"(\\?\)") || full.starts_with(LR"(\\.\)")) return full;
  return full.starts_with(LR"(\\)") ? LR"(\\?\UNC\)" + full.substr(2) : LR"(\\?\)" + full;
}

// A short name leads to the same file, but SQLite finds the log by the name.
std::wstring WithLongNames(const std::wstring& full) {
  if (full.find(L'~') == std::wstring::npos) return full;
  std::wstring written(GetLongPathNameW(full.c_str(), nullptr, 0), L'\0');
  const auto room = static_cast<DWORD>(written.size());
  written.resize(GetLongPathNameW(full.c_str(), written.data(), room));
  return written.empty() ? full : written;
}

// Windows moves and replaces no file that somebody has open. Whoever only looks at one is
// waited for.
MoveResult Move(const std::wstring& from, const std::wstring& to, bool replace) {
  const DWORD flags = MOVEFILE_WRITE_THROUGH | (replace ? MOVEFILE_REPLACE_EXISTING : 0U);
  const Patience patience(ToUtf8(to));
  bool wasDenied = true;
  while (MoveFileExW(from.c_str(), to.c_str(), flags) == 0) {
    const DWORD error = GetLastError();
    if (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS) {
      return MoveResult::kTargetExists;
    }
    if (error == ERROR_INVALID_NAME) return MoveResult::kInvalidName;
    const bool isDenied = Probe(from, DELETE) == Access::kDenied || (replace && IsOpen(to));
    if (isDenied && !patience.Lasts()) return MoveResult::kTargetInUse;
    // The program that was in the way may have gone a moment ago. Only when the file is free twice
    // in a row does the move fail for another reason.
    if (!isDenied && !wasDenied) return MoveResult::kFailed;
    wasDenied = isDenied;
  }
  return MoveResult::kDone;
}

std::wstring FinalPath(HANDLE file) {
  std::wstring path(GetFinalPathNameByHandleW(file, nullptr, 0, 0), L'\0');
  path.resize(GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), 0));
  return path;
}

// The real path of a file or folder, also while others have it open. Empty if it is unknown.
std::wstring FinalPathOf(const std::wstring& path) {
  const HANDLE file = CreateFileW(path.c_str(), 0, kShareAll, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  std::wstring final = FinalPath(file);
  CloseHandle(file);
  return final;
}

// Use marks lie behind all that SQLite locks; each name has a place of its own there, as good as
// certainly.
constexpr std::uint64_t kUseMarks = 0x40000000 + 1024;
constexpr std::uint64_t kPlaces = std::uint64_t{1} << 60U;

std::uint64_t PlaceOf(HANDLE file) {
  std::wstring path = FinalPath(file);
  CharUpperBuffW(path.data(), static_cast<DWORD>(path.size()));
  std::uint64_t place = 0xCBF29CE484222325U;
  for (const wchar_t letter : path) place = (place ^ letter) * 0x100000001B3U;
  return kUseMarks + 1 + place % kPlaces;
}

OVERLAPPED At(std::uint64_t place) {
  OVERLAPPED at{};
  at.Offset = static_cast<DWORD>(place);
  at.OffsetHigh = static_cast<DWORD>(place >> 32U);
  return at;
}

bool IsLockedByOthers(HANDLE file, std::uint64_t begin, std::uint64_t end) {
  constexpr DWORD kTry = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
  const std::uint64_t size = end - begin;
  const auto low = static_cast<DWORD>(size);
  const auto high = static_cast<DWORD>(size >> 32U);
  OVERLAPPED at = At(begin);
  if (LockFileEx(file, kTry, 0, low, high, &at) == 0) {
    return GetLastError() == ERROR_LOCK_VIOLATION;
  }
  UnlockFileEx(file, 0, low, high, &at);
  return false;
}

bool HasOneName(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION facts{};
  return GetFileInformationByHandle(file, &facts) == 0 || facts.nNumberOfLinks < 2;
}

// Of two programs that open the file by different names at once, at least one sees the other's
// mark.
bool Mark(HANDLE file) {
  const std::uint64_t place = PlaceOf(file);
  OVERLAPPED at = At(place);
  if (LockFileEx(file, LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &at) == 0) {
    return GetLastError() != ERROR_LOCK_VIOLATION;
  }
  if (HasOneName(file) || (!IsLockedByOthers(file, kUseMarks, place) &&
                           !IsLockedByOthers(file, place + 1, kUseMarks + 2 + kPlaces))) {
    return true;
  }
  UnlockFileEx(file, 0, 1, 0, &at);
  return false;
}

}  // namespace

std::string HostPath(std::string_view path) {
  const std::wstring wide = Widen(path, CP_ACP);
  std::wstring full(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
  const auto room = static_cast<DWORD>(full.size());
  full.resize(GetFullPathNameW(wide.c_str(), room, full.data(), nullptr));
  return ToUtf8(WithoutLimit(WithLongNames(full)));
}

FileFacts InspectFile(const std::string& path) {
  std::wstring wide = ToWide(path);
  const DWORD attributes = GetFileAttributesW(wide.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return {};
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return {FileKind::kOther, {}};
  // The path serves as identity: as long as SQLite has the file open, Windows lets nobody rename or
  // delete it. Asking for the file's own number would open it, which costs hundreds of times more.
  CharUpperBuffW(wide.data(), static_cast<DWORD>(wide.size()));
  return {FileKind::kFile, ToUtf8(wide)};
}

std::string PathOfFile(const std::string& path) {
  const std::wstring final = FinalPathOf(ToWide(path));
  if (final.starts_with(LR"(\\?\UNC\)")) return ToUtf8(WithoutLimit(LR"(\\)" + final.substr(8)));
  const bool isOnDrive = final.size() > 5 && final[5] == L':';
  return isOnDrive ? ToUtf8(WithoutLimit(final.substr(4))) : path;
}

bool IsShortEnough(const std::string& path) {
  constexpr std::size_t kLongest = 255;
  const std::wstring wide = ToWide(path + "-journal");
  return wide.size() - (wide.find_last_of(L"/\\") + 1) <= kLongest;
}

// The drive is asked for by the path that links in folders lead to, which may be a share's.
bool IsOnLocalDisk(const std::string& path) {
  const std::wstring final = FinalPathOf(ToWide(path));
  std::vector<wchar_t> root(final.size() + 2);
  if (GetVolumePathNameW(final.c_str(), root.data(), static_cast<DWORD>(root.size())) == 0) {
    return false;
  }
  const bool isDrive = root.size() > 5 && root[5] == L':';  // behind the mark of complete paths
  const UINT type = GetDriveTypeW(root.data() + (isDrive ? 4 : 0));
  return type == DRIVE_FIXED || type == DRIVE_RAMDISK;
}

Access AccessTo(const std::string& path, bool toWrite) {
  return Probe(ToWide(path), toWrite ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ);
}

bool IsDeletable(const std::string& path) { return Probe(ToWide(path), DELETE) != Access::kDenied; }

MoveResult MoveFileTo(const std::string& from, const std::string& to) {
  return Move(ToWide(from), ToWide(to), false);
}

MoveResult ReplaceFile(const std::string& from, const std::string& to) {
  return Move(ToWide(from), ToWide(to), true);
}

bool IsInUse(const std::string& path) {
  const Patience patience(path);
  while (IsOpen(ToWide(path))) {
    if (!patience.Lasts()) return true;
  }
  return false;
}

// Nobody renames a file that is open, so only one with several names can be open by another. Who
// looks for marks locks them all for a moment, and is waited for.
bool UseMark::Set(const std::string& path) {
  const HANDLE file =
      CreateFileW(ToWide(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                  OPEN_EXISTING, 0, nullptr);
  file_ = reinterpret_cast<std::intptr_t>(file);
  if (file == INVALID_HANDLE_VALUE) return true;
  const Patience patience(path);
  while (!Mark(file)) {
    if (!patience.Lasts()) return false;
  }
  return true;
}

void UseMark::End() {
  if (file_ != -1) CloseHandle(reinterpret_cast<HANDLE>(std::exchange(file_, -1)));
}

void RemoveFile(const std::string& path) { DeleteFileW(ToWide(path).c_str()); }

// Windows tells only those who try.
bool CanMakeFilesBeside(const std::string& path) {
  const std::wstring beside = ToWide(path + '-' + std::to_string(GetCurrentProcessId()));
  const HANDLE file = CreateFileW(beside.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (file == INVALID_HANDLE_VALUE) return GetLastError() != ERROR_ACCESS_DENIED;
  CloseHandle(file);
  return true;
}

// It gets its rights from the folder, whoever makes it.
bool CanMakeLogFor(const std::string& /*path*/) { return true; }

void AdaptFileCalls() {}

bool HasNoRoomBeside(const std::string& /*path*/) { return false; }

// There is no limit that is reached before memory ends.
bool AreFileHandlesUsedUp() { return false; }

bool AreAddressesUsedUp() {
  constexpr SIZE_T kOneView = 65536;
  void* const room = VirtualAlloc(nullptr, kOneView, MEM_RESERVE, PAGE_NOACCESS);
  if (room != nullptr) VirtualFree(room, 0, MEM_RELEASE);
  return room == nullptr;
}

}  // namespace recordmanager
