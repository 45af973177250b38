// The files that this process has open. Opening a database costs far more than a read, and callers
// open and close all the time; so a closed file's database stays open for a while, and opening it
// again is a look-up.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "recordmanager/call.h"
#include "recordmanager/cursor.h"
#include "recordmanager/memory_limit.h"
#include "recordmanager/record_file.h"

namespace recordmanager {

class OpenFiles {
 public:
  struct OpenFile {
    RecordFile* file = nullptr;
    bool readOnly = false;
  };

  // `path` as HostPath gives it. Status 0 and a handle, or why the file cannot be opened.
  int Open(const std::string& path, bool readOnly, const ClientId& client, FileHandle& handle);
  void Close(const FileHandle& handle);

  // Status 3 when the handle is stale, or was opened by another client; another one when the file,
  // which a parent process had open, cannot be opened anew just now.
  int Find(const FileHandle& handle, const ClientId& client, OpenFile& open) const;

  // Lets go of the file at `path` so that it can be replaced; status 85 when somebody here has it
  // open.
  int Release(const std::string& path);

  // Closes what nobody has used for a while, so that files can be moved and restored. Takes a look
  // at the clock; so it is for calls that take longer than that themselves.
  void CloseIdle();

  // Closes all that nobody uses.
  void CloseUnused();

  // To be called when this process has become a copy of another one that has files open, and then
  // before each call: opens anew what was open there.
  void BecomeChild();
  void LetGoOfParents() {
    if (hasParents_) ReplaceParents();
  }

  // Gives back the memory of all that can be read again.
  void ForgetRecords();

  // Ends the transactions of all files. The first that fails takes the remaining ones back.
  int CommitAll();
  void RollBackAll();

 private:
  struct Database {
    ~Database();

    // A file that was read-only may be writable by now.
    bool MayHaveChanged() const { return users == 0 && file->IsReadOnly(); }

    std::string path;
    std::string realPath;  // as PathOfFile gives it
    std::string identity;
    std::unique_ptr<RecordFile> file;
    int users = 0;
    Clock::time_point idleSince;
    bool isParents = false;
    int failure = btrieve::kSuccess;  // why it is still the parent's
  };

  struct Slot {
    std::uint32_t generation = 0;
    Database* database = nullptr;  // null: free
    ClientId client{};
    bool readOnly = false;
  };

  int Provide(const std::string& path, bool readOnly, Database*& database);
  int OpenAnew(const std::string& path, const std::string& identity, bool readOnly,
               Database*& database);
  Database* KnownByRealPath(const std::string& realPath);
  void CloseUnusedSince(Clock::time_point time);
  void Drop(const Database* database);
  void ReplaceParents();
  void SettleUnused();
  Slot& FreeSlot(std::uint32_t& number);

  MemoryLimit memory_;  // outlives the files
  std::vector<std::unique_ptr<Database>> databases_;
  std::vector<Slot> slots_;
  bool hasParents_ = false;
};

}  // namespace recordmanager
