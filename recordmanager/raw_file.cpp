#include "recordmanager/raw_file.h"

#include <sqlite3.h>

namespace recordmanager {

RawFile::RawFile(sqlite3_vfs& files, const char* name, int kind)
    : memory_(static_cast<std::size_t>(files.szOsFile) / sizeof(std::max_align_t) + 1),
      file_(reinterpret_cast<sqlite3_file*>(memory_.data())) {
  int flags = 0;
  opened_ = files.xOpen(&files, name, file_, SQLITE_OPEN_READONLY | kind, &flags);
}

RawFile::~RawFile() {
  if (!memory_.empty() && file_->pMethods != nullptr) file_->pMethods->xClose(file_);
}

int RawFile::Read(std::int64_t offset, std::span<std::uint8_t> bytes) const {
  if (opened_ != SQLITE_OK || file_->pMethods == nullptr) return StatusOf(opened_);
  const int result =
      file_->pMethods->xRead(file_, bytes.data(), static_cast<int>(bytes.size()), offset);
  return result == SQLITE_IOERR_SHORT_READ ? btrieve::kEndOfFile : StatusOf(result);
}

int RawFile::Size(std::int64_t& bytes) const {
  if (opened_ != SQLITE_OK || file_->pMethods == nullptr) return StatusOf(opened_);
  sqlite3_int64 size = 0;
  const int result = file_->pMethods->xFileSize(file_, &size);
  bytes = size;
  return StatusOf(result);
}

}  // namespace recordmanager
