// A registry of one's own, with a folder.
#pragma once

#include "testkit/process.h"
#include "testkit/temporary_folder.h"

namespace testkit {

// As long as it exists, this process has it; empty at first. One at a time.
class PrivateRegistry {
 public:
  PrivateRegistry() { UsePrivateRegistry(Folder()); }
  ~PrivateRegistry() { DropPrivateRegistry(); }
  PrivateRegistry(const PrivateRegistry&) = delete;
  PrivateRegistry& operator=(const PrivateRegistry&) = delete;

  // Holds, where the registry is a file, that file and nothing else.
  const std::filesystem::path& Folder() const { return folder_.Path(); }

 private:
  TemporaryFolder folder_;
};

}  // namespace testkit
