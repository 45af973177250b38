#include "stress/folder_syncs.h"

namespace stress {

bool WatchFolderSyncs(std::function<void()> /*watcher*/) { return false; }

}  // namespace stress
