// The caller's place in an open file. It is kept in the position block itself, so that a copy of
// the block is a cursor of its own, which may simply be dropped.
#pragma once

#include <cstdint>

#include "btrieve/btrieve.h"
#include "recordmanager/key.h"
#include "recordmanager/record_file.h"

namespace recordmanager {

// An entry in the table of open files. A slot's generation grows each time it is used anew, so that
// the blocks of a closed file are found out.
struct FileHandle {
  std::uint32_t slot = 0;
  std::uint32_t generation = 0;
};

struct Cursor {
  static constexpr int kNoKey = -1;

  FileHandle handle;
  int keyNumber = kNoKey;  // the key that Get Next and Get Previous walk along
  Entry entry;  // where on it; a bound before or after all entries when a read has run off the end
  RecordVersion current;  // what Update and Delete mean

  // False when the block is null or was not written by Save since the library was loaded, or since
  // ForgetAll.
  static bool Load(const std::uint8_t* positionBlock, Cursor& cursor);
  void Save(std::uint8_t* positionBlock) const;
  static void ForgetAll();
};

}  // namespace recordmanager
