// How much memory the files of a process take for what they have read. Each may keep more than ten
// megabytes, which is too much for a host of 32 bits once dozens are open: so there is one limit
// for all together. When it is passed, those that have not been read from for longest give theirs
// back.
#pragma once

#include <cstddef>
#include <vector>

namespace recordmanager {

class RecordFile;

class MemoryLimit {
 public:
  void Add(RecordFile& file) { shares_.push_back({&file}); }
  // Also when it has been removed already.
  void Remove(const RecordFile& file);

  // To be called when the file has been read from or written. It keeps what it has itself.
  void Note(const RecordFile& file);

 private:
  struct Share {
    RecordFile* file;
    std::size_t bytes = 0;
  };

  void Count(Share& share);

  std::vector<Share> shares_;  // the one read from last comes last
  std::size_t bytes_ = 0;      // of all
};

}  // namespace recordmanager
