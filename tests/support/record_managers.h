// The record managers of a test: which of them the library finds, and the embedded one for the
// tests' own use.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "recordmanager/btrieve.h"

namespace qlx99::tests {

// Where qlx99.dll and atbtrv32.dll lie.
std::filesystem::path ProductFolder();

// The embedded record manager's entry point, as long as ReleaseEmbedded is not called.
btrieve::BtrCall* EmbeddedCall();
btrieve::BtrCallId* EmbeddedCallId();
void ReleaseEmbedded();

// Unloads what the library under test leaves loaded by design, so that each test starts anew.
void UnloadRecordManagers();

// By its bare name, as it lies beside the library, not beside this program.
void FindTheEmbeddedManager();

// A record manager that can be put in the library's way.
struct PlacedManager {
  enum Kind { kComplete, kWithoutBtrCall, kWithoutBtrCallId };

  std::string name;  // without ".dll"
  Kind kind = kComplete;
};

// What the library finds by a bare name. Until told otherwise that is the embedded one.
class FoundManagers {
 public:
  FoundManagers();
  ~FoundManagers();
  FoundManagers(const FoundManagers&) = delete;
  FoundManagers& operator=(const FoundManagers&) = delete;

  // These and nothing else. Returns the folder in which they lie.
  const std::filesystem::path& Are(const std::vector<PlacedManager>& managers);

 private:
  std::filesystem::path folder_;
};

}  // namespace qlx99::tests
