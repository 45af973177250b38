#include "stress/frail_disk.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "testkit/files.h"

#ifdef __linux__
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace {

// Who wants to know when a folder is synchronised, so that its names outlive a loss of power. While
// there is somebody, nothing that this process does is synchronised in truth.
std::function<void()> folderIsSynced;

constexpr bool kNamesNeedSync = std::filesystem::path::preferred_separator == '/';

}  // namespace

#ifdef __linux__
// In the place of the host's, for all of this program.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): its name is a reserved one
extern "C" int fsync(int file) {
  if (!folderIsSynced) return static_cast<int>(syscall(SYS_fsync, file));
  struct stat facts {};
  if (fstat(file, &facts) == 0 && S_ISDIR(facts.st_mode)) folderIsSynced();
  return 0;
}
#endif

namespace stress {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kSector = 512;

// Makes room for what is written behind the end.
void Overlay(std::string& content, std::int64_t place, std::string_view bytes) {
  const auto begin = static_cast<std::size_t>(place);
  content.resize(std::max(content.size(), begin + bytes.size()));
  content.replace(begin, bytes.size(), bytes);
}

}  // namespace

FrailDisk::FrailDisk(fs::path folder, unsigned seed, bool forgetful)
    : folder_(std::move(folder)),
      links_(folder_.string() + "-links"),
      random_(seed),
      forgetful_(forgetful) {
  folderIsSynced = [this] {
    CountDown();
    if (!off_ && !forgetful_) names_ = PresentNames();
  };
  Settle();
}

FrailDisk::~FrailDisk() { folderIsSynced = nullptr; }

int FrailDisk::Answer(const Request& request) {
  if (!IsOurs(request)) return SQLITE_OK;
  if (off_) return SQLITE_IOERR;
  const bool syncs = request.kind == SQLITE_IOERR_FSYNC;
  const bool changes = syncs || request.kind == SQLITE_CANTOPEN ||
                       request.kind == SQLITE_IOERR_DELETE || request.kind == SQLITE_IOERR_WRITE ||
                       request.kind == SQLITE_IOERR_TRUNCATE;
  if (!syncs) Take(request);  // the power may go in the midst of it
  if (changes) CountDown();
  if (off_) return SQLITE_IOERR;
  if (syncs) Take(request);
  return SQLITE_OK;
}

bool FrailDisk::IsOurs(const Request& request) const {
  if (request.file != nullptr) return open_.contains(request.file);
  return request.path != nullptr && fs::path(request.path).parent_path() == folder_;
}

void FrailDisk::NoteOpened(const sqlite3_file* file, const char* path) {
  open_.erase(file);
  if (IsOurs({.kind = SQLITE_CANTOPEN, .path = path})) open_[file] = ContentOf(path);
}

FrailDisk::Content* FrailDisk::ContentOf(const fs::path& path) {
  std::error_code none;
  for (std::size_t i = 0; i < contents_.size(); ++i) {
    if (fs::equivalent(links_ / std::to_string(i), path, none)) return &contents_[i];
  }
  fs::create_hard_link(path, links_ / std::to_string(contents_.size()), none);
  return &contents_.emplace_back();
}

void FrailDisk::Take(const Request& request) {
  if (request.file == nullptr) return;
  Content& content = *open_[request.file];
  if (request.kind == SQLITE_IOERR_WRITE) {
    content.unsafe.push_back({request.place, {{request.bytes.begin(), request.bytes.end()}}});
  } else if (request.kind == SQLITE_IOERR_TRUNCATE) {
    content.unsafe.push_back({request.place, {}});
  } else if (request.kind == SQLITE_IOERR_FSYNC && !forgetful_) {
    content = {Kept(content), {}};
  }
}

FrailDisk::Names FrailDisk::PresentNames() {
  Names names;
  for (const auto& entry : fs::directory_iterator(folder_)) {
    names[entry.path().filename().string()] = ContentOf(entry.path());
  }
  return names;
}

void FrailDisk::CountDown() {
  if (!off_ && left_ > 0 && --left_ == 0) Cut();
}

void FrailDisk::Cut() {
  off_ = true;
  luck_ = static_cast<unsigned>(random_() % 3);
  const Names present = PresentNames();
  Names names = kNamesNeedSync ? names_ : present;
  for (const auto& [name, content] : present) {
    if (names[name] != content && IsKept()) names[name] = content;
  }
  std::erase_if(names, [&](const auto& one) {
    return one.second == nullptr || (!present.contains(one.first) && IsKept());
  });
  kept_.clear();
  for (const auto& [name, content] : names) {
    // Shared memory is a file on some hosts, but no content of a disk.
    const bool isMemory = name.ends_with("-shm");
    if (!isMemory) kept_[name] = Kept(*content);
    if (isMemory && random_() % 2 == 0) kept_[name] = KeptMemory(folder_ / name);
  }
  luck_ = kAll;
}

std::string FrailDisk::Kept(const Content& content) {
  std::string kept = content.safe;
  for (const Change& change : content.unsafe) {
    if (luck_ == kSome && change.bytes && random_() % 3 == 0) {
      Keep(change, kept);
    } else if (IsKept()) {
      if (change.bytes) Overlay(kept, change.place, *change.bytes);
      if (!change.bytes) kept.resize(static_cast<std::size_t>(change.place));
    }
  }
  return kept;
}

// Some of its sectors.
void FrailDisk::Keep(const Change& write, std::string& content) {
  const auto end = write.place + static_cast<std::int64_t>(write.bytes->size());
  for (std::int64_t begin = write.place; begin < end;) {
    const auto next = std::min(end, (begin / kSector + 1) * kSector);
    if (IsKept()) {
      Overlay(content, begin,
              std::string_view(*write.bytes)
                  .substr(static_cast<std::size_t>(begin - write.place),
                          static_cast<std::size_t>(next - begin)));
    }
    begin = next;
  }
}

// Any of its pages may have come to the disk, at any time.
std::string FrailDisk::KeptMemory(const fs::path& path) {
  std::string bytes = testkit::ReadAll(path);
  const std::string rubbish(static_cast<std::size_t>(kSector), static_cast<char>(random_()));
  const auto sectors = static_cast<unsigned>(bytes.size()) / static_cast<unsigned>(kSector);
  if (sectors != 0 && random_() % 2 == 0) Overlay(bytes, random_() % sectors * kSector, rubbish);
  return bytes;
}

void FrailDisk::Restart() {
  fs::remove_all(folder_);
  fs::create_directories(folder_);
  for (const auto& [name, bytes] : kept_) testkit::WriteAll(folder_ / name, bytes);
  Settle();
  off_ = false;
  left_ = 0;
}

// All that is there is safe.
void FrailDisk::Settle() {
  fs::remove_all(links_);
  fs::create_directories(links_);
  open_.clear();
  contents_.clear();
  names_ = PresentNames();
  for (const auto& [name, content] : names_) content->safe = testkit::ReadAll(folder_ / name);
}

}  // namespace stress
