// A file system that fails on command: the nth request.
#pragma once

#include "stress/hooked_files.h"

namespace stress {

// Which requests may fail, and with what.
enum class DiskFault {
  kFull,     // writing: the disk is full
  kIoError,  // anything but opening: an input/output error
  kCannotOpen
};

class FaultyFiles : public HookedFiles {
 public:
  // The nth request from now on that may fail so, counted from 1, fails; if `lasting`, all behind
  // it do too.
  void Fail(DiskFault fault, int nth, bool lasting);

  // All is well again. False when nothing has failed since Fail.
  bool Heal();

  int Answer(const Request& request) override;

 private:
  DiskFault fault_ = DiskFault::kFull;
  int left_ = 0;  // requests until the one that fails; 0: none does
  bool lasting_ = false;
  bool failed_ = false;
};

}  // namespace stress
