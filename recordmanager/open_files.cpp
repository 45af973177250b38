#include "recordmanager/open_files.h"

#include <algorithm>
#include <utility>

#include "recordmanager/host_files.h"
#include "recordmanager/patience.h"

namespace recordmanager {
namespace {

using namespace std::chrono_literals;

constexpr auto kIdleTime = 2s;

}  // namespace

int OpenFiles::Open(const std::string& path, bool readOnly, const ClientId& client,
                    FileHandle& handle) {
  Database* database = nullptr;
  if (const int status = Provide(path, readOnly, database); status != btrieve::kSuccess) {
    return status;
  }
  if (!readOnly && database->file->IsReadOnly()) return btrieve::kPermissionError;
  Slot& slot = FreeSlot(handle.slot);  // which may be the last of the memory
  ++database->users;
  handle.generation = ++slot.generation;
  slot.database = database;
  slot.client = client;
  slot.readOnly = readOnly;
  return btrieve::kSuccess;
}

// Finds the database among those that are open, or opens it.
int OpenFiles::Provide(const std::string& path, bool readOnly, Database*& database) {
  const FileFacts facts = InspectFile(path);
  if (facts.kind != FileKind::kFile) {
    return facts.kind == FileKind::kMissing ? btrieve::kFileNotFound : btrieve::kInvalidFileName;
  }
  for (std::size_t i = databases_.size(); i-- > 0;) {
    Database* known = databases_[i].get();
    if (known->identity != facts.identity && known->path != path) continue;
    if (known->failure != btrieve::kSuccess) return known->failure;
    // By another path it is the same database only if the old path still leads to it: SQLite's log
    // goes by the path.
    if (!known->MayHaveChanged() && known->identity == facts.identity &&
        (known->path == path || InspectFile(known->path).identity == facts.identity)) {
      database = known;
      return btrieve::kSuccess;
    }
    if (known->users != 0 || known->file->IsInTransaction()) return btrieve::kFileInUse;
    Drop(known);
  }
  return OpenAnew(path, facts.identity, readOnly, database);
}

int OpenFiles::OpenAnew(const std::string& path, const std::string& identity, bool readOnly,
                        Database*& database) {
  const Patience patience(path);
  // Before the question for the file's own path, which costs an opening.
  if (patience.IsSpent()) return btrieve::kFileInUse;
  auto opened = std::make_unique<Database>();
  opened->realPath = PathOfFile(path);
  if (database = KnownByRealPath(opened->realPath); database != nullptr) return btrieve::kSuccess;
  const int status = RecordFile::Open(opened->realPath, readOnly, memory_, opened->file);
  if (status == btrieve::kFileInUse) patience.GiveUp();
  if (InspectFile(path).identity != identity) {
    return btrieve::kFileInUse;  // replaced in this very moment
  }
  if (status != btrieve::kSuccess) return status;
  opened->path = path;
  opened->identity = identity;
  opened->idleSince = Clock::now();
  database = opened.get();
  databases_.push_back(std::move(opened));
  return btrieve::kSuccess;
}

// On hosts where the identity does not tell that two paths lead to the same file.
OpenFiles::Database* OpenFiles::KnownByRealPath(const std::string& realPath) {
  const auto known = std::ranges::find_if(databases_, [&](const auto& database) {
    return database->realPath == realPath && !database->isParents;
  });
  if (known == databases_.end()) return nullptr;
  if (!(*known)->MayHaveChanged()) return known->get();
  Drop(known->get());
  return nullptr;
}

OpenFiles::Slot& OpenFiles::FreeSlot(std::uint32_t& number) {
  auto free = std::find_if(slots_.begin(), slots_.end(),
                           [](const Slot& slot) { return slot.database == nullptr; });
  if (free == slots_.end()) free = slots_.insert(free, Slot{});
  number = static_cast<std::uint32_t>(free - slots_.begin());
  return *free;
}

int OpenFiles::Find(const FileHandle& handle, const ClientId& client, OpenFile& open) const {
  if (handle.slot >= slots_.size()) return btrieve::kFileNotOpen;
  const Slot& slot = slots_[handle.slot];
  if (slot.database == nullptr || slot.generation != handle.generation || slot.client != client) {
    return btrieve::kFileNotOpen;
  }
  if (slot.database->isParents) return slot.database->failure;
  open = {slot.database->file.get(), slot.readOnly};
  return btrieve::kSuccess;
}

void OpenFiles::Close(const FileHandle& handle) {
  Slot& slot = slots_[handle.slot];
  Database* database = std::exchange(slot.database, nullptr);
  if (--database->users == 0) {
    database->idleSince = Clock::now();
    if (!database->isParents) database->file->Settle();
  }
}

int OpenFiles::Release(const std::string& path) {
  const std::string identity = InspectFile(path).identity;
  const std::string real = PathOfFile(path);
  for (std::size_t i = databases_.size(); i-- > 0;) {
    const Database* known = databases_[i].get();
    const bool isSame = known->path == path || known->realPath == real ||
                        (!identity.empty() && known->identity == identity);
    if (!isSame) continue;
    if (known->users != 0) return btrieve::kFileInUse;
    Drop(known);
  }
  return btrieve::kSuccess;
}

void OpenFiles::CloseIdle() { CloseUnusedSince(Clock::now() - kIdleTime); }

void OpenFiles::CloseUnused() { CloseUnusedSince(Clock::time_point::max()); }

void OpenFiles::CloseUnusedSince(Clock::time_point time) {
  std::erase_if(databases_, [time](const auto& database) {
    const bool idle = database->users == 0 && !database->isParents &&
                      !database->file->IsInTransaction() && database->idleSince < time;
    if (idle) database->file->Settle();  // if somebody was in the way when it was closed
    return idle;
  });
}

void OpenFiles::ForgetRecords() {
  for (const auto& database : databases_) {
    if (!database->isParents) database->file->ForgetRecords();
  }
}

void OpenFiles::BecomeChild() {
  for (const auto& database : databases_) {
    database->isParents = true;
    database->file->BecomeParents();
  }
  hasParents_ = true;
}

// What cannot be opened anew is tried again by the next call, as long as it is there at all.
void OpenFiles::ReplaceParents() {
  bool remain = false;
  for (std::size_t i = databases_.size(); i-- > 0;) {
    Database* parents = databases_[i].get();
    if (!parents->isParents) continue;
    Database* own = nullptr;
    if (parents->users != 0) {
      parents->failure =
          OpenAnew(parents->path, parents->identity, parents->file->IsReadOnly(), own);
      if (own == nullptr && InspectFile(parents->path).identity == parents->identity) {
        remain = true;
        continue;
      }
    }
    if (own != nullptr) {
      own->users = parents->users;
      own->file->GoOnFrom(*parents->file);
    }
    for (Slot& slot : slots_) {
      if (slot.database == parents) slot.database = own;
    }
    Drop(parents);
  }
  hasParents_ = remain;
}

// A forked child never closes its parent's files: that would end the parent's locks and empty its
// logs.
OpenFiles::Database::~Database() {
  if (isParents) static_cast<void>(file.release());
}

int OpenFiles::CommitAll() {
  int status = btrieve::kSuccess;
  for (const auto& database : databases_) {
    if (status == btrieve::kSuccess) {
      status = database->file->Commit();
    } else {
      database->file->RollBack();
    }
  }
  SettleUnused();
  return status;
}

void OpenFiles::RollBackAll() {
  for (const auto& database : databases_) database->file->RollBack();
  SettleUnused();
}

void OpenFiles::SettleUnused() {
  for (const auto& database : databases_) {
    if (database->users == 0) database->file->Settle();
  }
}

void OpenFiles::Drop(const Database* database) {
  std::erase_if(databases_, [database](const auto& other) { return other.get() == database; });
}

}  // namespace recordmanager
