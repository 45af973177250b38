// The record manager: one call in, one status out.
//
// A record file is one SQLite database with two tables:
//
//   file    one row. `description` is the buffer that Create was given (btrieve.h); `changes`
//           counts every insertion and update and is set back only with a transaction that is taken
//           back. `state` and `before` tell this state of the file from any other, and the one that
//           it came from (leftovers.h).
//   record  one row a record. `data` holds its bytes. `id` and `version` are the values of
//           `changes` when it was inserted and last written, so neither ever comes back once it is
//           committed. A column `key<n>` a key holds the entry that key n sorts the record by
//           (key.h).
//
// An entry is the key's value, made comparable byte by byte; for keys with duplicates followed by
// the value of `changes` when the record was given this value. Each key has a unique index: reading
// along it is one look-up, however many duplicates there are, and duplicates come in the order in
// which they came to be.
//
// The application id and the user version in the header mark the file and its format. On local
// disks it works with a write-ahead log (NAME-wal and NAME-shm beside it while it is in use),
// elsewhere with a rollback journal. All its users must be on one machine, or all on shares.
//
// The position block holds the caller's cursor and nothing refers to it from here: which open file,
// the key and the entry on it that were read last, the record's id and version, and a check word
// over all that. Get Next asks for the first entry after the remembered one, so it does not matter
// what became of that record. Update and Delete compare the version with the file's, and find out
// about other writers without locks.
//
// A transaction belongs to one client and spans the files written while it lasts. It is atomic for
// each file, not over several. The process's other clients find all files in use until it ends.
#pragma once

#include "recordmanager/call.h"
#include "recordmanager/open_files.h"

namespace recordmanager {

class Engine {
 public:
  // Carries out one call and returns its status. Not for several threads at once.
  int Serve(const Call& call) noexcept;

  // To be called when the process has become a copy of another one that has files open. Each is
  // opened anew for the next call; the transaction is the other's.
  void BecomeChild() noexcept;

 private:
  int Try(const Call& call) noexcept;
  int Dispatch(const Call& call);
  int Open(const Call& call);
  int Create(const Call& call);
  int BeginTransaction(const Call& call);
  int EndTransaction(const Call& call);

  // The operations on an open file. `cursor` is saved in the position block unless it has become
  // someone else's.
  int ServeOpenFile(const Call& call);
  int Close(const Call& call, const Cursor& cursor);
  int Stat(const Call& call, RecordFile& file) const;
  int Write(const Call& call, const OpenFiles::OpenFile& open, Cursor& cursor) const;

  OpenFiles files_;
  bool inTransaction_ = false;
  ClientId transactionClient_{};
};

}  // namespace recordmanager
