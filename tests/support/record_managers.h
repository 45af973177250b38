// The record managers of a test: which of them the library finds.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "testkit/embedded_manager.h"
#include "testkit/temporary_folder.h"

namespace qlx99::tests {

using namespace testkit;

// Unload what the library under test leaves loaded by design, so that each test starts anew.
void UnloadRecordManager(const char* name);
void UnloadRecordManagers();

// By its bare name, as it lies beside the library, not beside this program.
void FindTheEmbeddedManager();

// Where the library lies.
std::filesystem::path LibraryFolder();

// A record manager that can be put in the library's way.
struct PlacedManager {
  static constexpr const char* kWithoutBtrCall = "manager_without_btrcall";
  static constexpr const char* kWithoutBtrCallId = "manager_without_btrcallid";

  std::string name;  // without ".dll"
  std::string made = "scripted_manager";
};

// What the library finds by a bare name. Until told otherwise that is the embedded one.
class FoundManagers {
 public:
  FoundManagers() = default;
  ~FoundManagers();
  FoundManagers(const FoundManagers&) = delete;
  FoundManagers& operator=(const FoundManagers&) = delete;

  // These and nothing else, beside the library. Returns the folder in which they lie.
  const std::filesystem::path& Are(const std::vector<PlacedManager>& managers);

 private:
  TemporaryFolder folder_;
};

}  // namespace qlx99::tests
