#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <utility>

#include "stress/folder_syncs.h"

namespace {

std::function<void()> folderWatcher;

}  // namespace

// In the place of the host's, for all of this program.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): its name is a reserved one
extern "C" int fsync(int file) {
  if (!folderWatcher) return static_cast<int>(syscall(SYS_fsync, file));
  struct stat facts {};
  if (fstat(file, &facts) == 0 && S_ISDIR(facts.st_mode)) folderWatcher();
  return 0;
}

namespace stress {

bool WatchFolderSyncs(std::function<void()> watcher) {
  folderWatcher = std::move(watcher);
  return true;
}

}  // namespace stress
