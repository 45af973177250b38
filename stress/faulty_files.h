// A file system that fails on command, for the files of this program's own SQLite: it lies over the
// host's real one and fails the nth request.
#pragma once

namespace stress {

// Which requests may fail, and with what.
enum class DiskFault {
  kFull,     // writing: the disk is full
  kIoError,  // anything but opening: an input/output error
  kCannotOpen
};

class FaultyFiles {
 public:
  FaultyFiles();
  ~FaultyFiles();
  FaultyFiles(const FaultyFiles&) = delete;
  FaultyFiles& operator=(const FaultyFiles&) = delete;

  // The nth request from now on that may fail so, counted from 1, fails; if `lasting`, all behind
  // it do too.
  void Fail(DiskFault fault, int nth, bool lasting);

  // All is well again. False when nothing has failed since Fail.
  bool Heal();
};

}  // namespace stress
