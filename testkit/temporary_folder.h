// A folder of one's own.
#pragma once

#include <filesystem>
#include <string>

namespace testkit {

// Empty, and used by nobody else, until the end of its scope. What cannot be removed then,
// because a file is still open, goes with RemoveTemporaryFolders.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  std::string Text() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

// Once, when all tests have run.
void RemoveTemporaryFolders();

}  // namespace testkit
