#include "recordmanager/engine.h"

#include <algorithm>
#include <cstring>

#include "recordmanager/file_format.h"
#include "recordmanager/host_files.h"
#include "recordmanager/reading.h"
#include "recordmanager/writing.h"

namespace recordmanager {

int Engine::Serve(const Call& call) noexcept {
  // What failed then has left nothing behind.
  const bool mayRepeat = !inTransaction_ || call.operation == btrieve::kOpen;
  const int status = Try(call);
  if (status != btrieve::kOutOfMemory && status != btrieve::kFileTableFull) return status;
  files_.ForgetRecords();
  files_.CloseUnused();
  return mayRepeat ? Try(call) : status;
}

int Engine::Try(const Call& call) noexcept {
  try {
    return Dispatch(call);
  } catch (...) {  // nothing here throws but the lack of memory
    return btrieve::kOutOfMemory;
  }
}

void Engine::BecomeChild() noexcept {
  inTransaction_ = false;
  files_.BecomeChild();
}

int Engine::Dispatch(const Call& call) {
  files_.LetGoOfParents();
  if (inTransaction_ && call.client != transactionClient_) return btrieve::kFileInUse;
  switch (call.operation) {
    case btrieve::kOpen:
      return Open(call);
    case btrieve::kCreate:
      return Create(call);
    case btrieve::kBeginTransaction:
      return BeginTransaction(call);
    case btrieve::kEndTransaction:
    case btrieve::kAbortTransaction:
      return EndTransaction(call);
    default:
      return call.operation <= btrieve::kStat ? ServeOpenFile(call) : btrieve::kInvalidOperation;
  }
}

int Engine::Open(const Call& call) {
  files_.CloseIdle();
  const std::string_view path = call.Path();
  if (call.positionBlock == nullptr || path.empty()) {
    return path.empty() ? btrieve::kInvalidFileName : btrieve::kFileNotOpen;
  }
  // The other published modes (accelerated, verifying, exclusive) ask for no more than every open
  // file has here, or for what cannot be kept between processes: they are taken as the normal one.
  const bool readOnly = call.keyNumber == btrieve::kOpenReadOnly;
  Cursor cursor;
  const int status = files_.Open(HostPath(path), readOnly, call.client, cursor.handle);
  if (status == btrieve::kSuccess) cursor.Save(call.positionBlock);
  return status;
}

int Engine::Create(const Call& call) {
  if (inTransaction_) return btrieve::kNotAllowedInTransaction;
  RecordLayout layout;
  if (const int status = ParseLayout(call.Data(), layout); status != btrieve::kSuccess) {
    return status;
  }
  const std::string path = HostPath(call.Path());
  const std::string folder = path.substr(0, path.find_last_of("/\\") + 1);
  const FileKind kind = InspectFile(path).kind;
  if (path.empty() || kind == FileKind::kOther || !IsShortEnough(path) ||
      (!folder.empty() && InspectFile(folder).kind == FileKind::kMissing)) {
    return btrieve::kInvalidFileName;
  }
  const bool replace = call.keyNumber != btrieve::kCreateOnly;
  if (kind == FileKind::kFile && !replace) return btrieve::kFileExists;
  if (const int status = files_.Release(path); status != btrieve::kSuccess) return status;
  return CreateRecordFile(path, layout, replace);
}

int Engine::BeginTransaction(const Call& call) {
  if (inTransaction_) return btrieve::kTransactionActive;
  inTransaction_ = true;
  transactionClient_ = call.client;
  return btrieve::kSuccess;
}

int Engine::EndTransaction(const Call& call) {
  if (!inTransaction_) return btrieve::kNoTransaction;
  inTransaction_ = false;
  if (call.operation == btrieve::kEndTransaction) return files_.CommitAll();
  files_.RollBackAll();
  return btrieve::kSuccess;
}

int Engine::ServeOpenFile(const Call& call) {
  Cursor cursor;
  if (!Cursor::Load(call.positionBlock, cursor)) return btrieve::kFileNotOpen;
  OpenFiles::OpenFile open;
  int status = files_.Find(cursor.handle, call.client, open);
  const bool mayClose = call.operation == btrieve::kClose && status != btrieve::kFileNotOpen;
  if (status != btrieve::kSuccess && !mayClose) return status;
  switch (call.operation) {
    case btrieve::kClose:
      return Close(call, cursor);
    case btrieve::kStat:
      return Stat(call, *open.file);
    case btrieve::kInsert:
    case btrieve::kUpdate:
    case btrieve::kDelete:
      status = Write(call, open, cursor);
      break;
    default:
      status = ReadRecord(call, *open.file, cursor);
  }
  cursor.Save(call.positionBlock);
  return status;
}

int Engine::Close(const Call& call, const Cursor& cursor) {
  files_.Close(cursor.handle);
  std::memset(call.positionBlock, 0, btrieve::kPositionBlockSize);
  return btrieve::kSuccess;
}

int Engine::Stat(const Call& call, RecordFile& file) const {
  RecordLayout layout = file.Layout();
  std::int64_t count = 0;
  if (const int status = file.CountRecords(count); status != btrieve::kSuccess) return status;
  layout.file.recordCount = static_cast<std::uint32_t>(count);
  for (std::size_t i = 0; i < layout.keys.size(); ++i) {
    if (const int status = file.CountValues(file.Layout().keys[i], count);
        status != btrieve::kSuccess) {
      return status;
    }
    btrieve::KeyDescription description = layout.keys[i].Description();
    description.uniqueValues = static_cast<std::uint32_t>(count);
    layout.keys[i] = Key(description);
  }
  const auto answer = DescribeLayout(layout);
  if (call.Data().size() < answer.size()) return btrieve::kDataBufferLength;
  std::copy(answer.begin(), answer.end(), call.Data().begin());
  call.SetDataLength(answer.size());
  return btrieve::kSuccess;
}

int Engine::Write(const Call& call, const OpenFiles::OpenFile& open, Cursor& cursor) const {
  if (open.readOnly) return btrieve::kAccessDenied;
  if (inTransaction_) {
    if (const int status = open.file->Begin(); status != btrieve::kSuccess) return status;
  }
  return WriteRecord(call, *open.file, cursor);
}

}  // namespace recordmanager
