#include "platform/windows_api.h"
#include "stress/host_files.h"

namespace stress {

std::string IdentityOf(const std::filesystem::path& file) {
  const HANDLE handle =
      CreateFileA(file.string().c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, OPEN_EXISTING, 0, nullptr);
  BY_HANDLE_FILE_INFORMATION facts{};
  GetFileInformationByHandle(handle, &facts);
  CloseHandle(handle);
  return std::to_string(facts.nFileIndexHigh) + ' ' + std::to_string(facts.nFileIndexLow);
}

bool WatchFolderSyncs(std::function<void()> /*watcher*/) { return false; }

}  // namespace stress
