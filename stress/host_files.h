// What a frail disk needs of the host's files.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace stress {

// The same for a file under whatever name, as long as it has one. Opaque bytes.
std::string IdentityOf(const std::filesystem::path& file);

// While there is a watcher, nothing that this process does is synchronised in truth; it is told
// when a folder should have been. False where names need no synchronising.
bool WatchFolderSyncs(std::function<void()> watcher);

}  // namespace stress
