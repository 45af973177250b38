// Who notices when a folder is synchronised, so that its names outlive a loss of power.
#pragma once

#include <functional>

namespace stress {

// While there is a watcher, nothing that this process does is synchronised in truth; it is told
// when a folder should have been. False where names need no synchronising.
bool WatchFolderSyncs(std::function<void()> watcher);

}  // namespace stress
