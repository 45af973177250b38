#include "stress/frail_disk.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "stress/host_files.h"
#include "testkit/files.h"

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

// Shared memory is a file on some hosts, but no content of a disk.
bool IsMemory(const std::string& name) { return name.ends_with("-shm"); }

}  // namespace

FrailDisk::FrailDisk(fs::path folder, unsigned seed, bool forgetful)
    : folder_(std::move(folder)),
      links_(folder_.string() + "-links"),
      random_(seed),
      forgetful_(forgetful),
      namesNeedSync_(WatchFolderSyncs([this] {
        CountDown();
        if (!off_) TakeNames();
      })) {
  fs::create_directories(links_);
  for (const auto& [name, identity] : PresentNames()) {
    contents_[identity].safe = testkit::ReadAll(folder_ / name);
  }
  names_ = PresentNames();
}

FrailDisk::~FrailDisk() {
  WatchFolderSyncs(nullptr);
  fs::remove_all(links_);
}

int FrailDisk::Answer(const Request& request) {
  if (!IsOurs(request)) return SQLITE_OK;
  if (off_) return SQLITE_IOERR;
  constexpr Request::Kind kChanges[] = {Request::kOpen, Request::kDelete, Request::kWrite,
                                        Request::kTruncate, Request::kSync};
  const bool changes = std::ranges::find(kChanges, request.kind) != std::end(kChanges);
  if (request.kind != Request::kSync) Take(request);  // it may be in the midst of it
  if (changes) CountDown();
  if (off_) return SQLITE_IOERR;
  if (request.kind == Request::kSync) Take(request);
  return SQLITE_OK;
}

bool FrailDisk::IsOurs(const Request& request) const {
  if (request.file != nullptr) return open_.contains(request.file);
  return request.path != nullptr && fs::path(request.path).parent_path() == folder_;
}

void FrailDisk::NoteOpened(const sqlite3_file* file, const char* path) {
  open_.erase(file);
  if (!IsOurs({.kind = Request::kOpen, .path = path})) return;
  open_[file] = IdentityOf(path);
  Know(open_[file], path);
}

FrailDisk::Content& FrailDisk::Know(const Identity& identity, const fs::path& path) {
  if (!contents_.contains(identity)) {
    std::error_code ignored;
    fs::create_hard_link(path, links_ / std::to_string(contents_.size()), ignored);
  }
  return contents_[identity];
}

void FrailDisk::Take(const Request& request) {
  if (request.file == nullptr) return;
  Content& content = contents_[open_[request.file]];
  if (request.kind == Request::kWrite) {
    content.unsafe.emplace_back(
        Write{request.place, std::string(request.bytes.begin(), request.bytes.end())});
  } else if (request.kind == Request::kTruncate) {
    content.unsafe.emplace_back(Truncation{request.place});
  } else if (request.kind == Request::kSync && !forgetful_) {
    content = {Kept(content, Luck::kAll), {}};
  }
}

void FrailDisk::TakeNames() {
  if (!forgetful_) names_ = PresentNames();
}

FrailDisk::Names FrailDisk::PresentNames() {
  Names names;
  for (const auto& entry : fs::directory_iterator(folder_)) {
    names[entry.path().filename().string()] = IdentityOf(entry.path());
  }
  return names;
}

void FrailDisk::CountDown() {
  if (!off_ && left_ > 0 && --left_ == 0) Cut();
}

void FrailDisk::Cut() {
  off_ = true;
  const auto luck = static_cast<Luck>(random_() % 3);
  const Names present = PresentNames();
  Names names = namesNeedSync_ ? names_ : present;
  if (namesNeedSync_) {
    for (const auto& [name, identity] : present) {
      if (names[name] != identity && IsKept(luck)) names[name] = identity;
    }
    std::erase_if(names, [&](const auto& one) {
      return one.second.empty() || (!present.contains(one.first) && IsKept(luck));
    });
  }
  kept_.clear();
  for (const auto& [name, identity] : names) {
    if (!IsMemory(name)) kept_[name] = Kept(contents_[identity], luck);
    if (IsMemory(name) && IsKept(Luck::kSome)) kept_[name] = KeptMemory(folder_ / name);
  }
}

std::string FrailDisk::Kept(const Content& content, Luck luck) {
  std::string kept = content.safe;
  for (const auto& change : content.unsafe) {
    const bool torn = luck == Luck::kSome && random_() % 3 == 0;
    if (!torn && !IsKept(luck)) continue;
    if (const auto* truncation = std::get_if<Truncation>(&change)) {
      kept.resize(static_cast<std::size_t>(truncation->size));
    } else if (const auto& write = std::get<Write>(change); torn) {
      Keep(write, kept);
    } else {
      Overlay(kept, write.place, write.bytes);
    }
  }
  return kept;
}

// Some of its sectors.
void FrailDisk::Keep(const Write& write, std::string& content) {
  const auto end = write.place + static_cast<std::int64_t>(write.bytes.size());
  for (std::int64_t begin = write.place; begin < end;) {
    const auto next = std::min(end, (begin / kSector + 1) * kSector);
    if (IsKept(Luck::kSome)) {
      Overlay(content, begin,
              std::string_view(write.bytes)
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
  if (sectors != 0 && IsKept(Luck::kSome)) Overlay(bytes, random_() % sectors * kSector, rubbish);
  return bytes;
}

void FrailDisk::Restart() {
  fs::remove_all(folder_);
  fs::remove_all(links_);
  fs::create_directories(folder_);
  fs::create_directories(links_);
  open_.clear();
  contents_.clear();
  for (const auto& [name, bytes] : kept_) {
    testkit::WriteAll(folder_ / name, bytes);
    contents_[IdentityOf(folder_ / name)].safe = bytes;
  }
  names_ = PresentNames();
  off_ = false;
  left_ = 0;
}

}  // namespace stress
