// The library under test, used as a macro's host uses it: loaded, its exports found by name, freed.
// And the record managers that it finds.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/export_list.h"
#include "frame/exports.h"
#include "testkit/embedded_manager.h"
#include "testkit/found_export.h"
#include "testkit/process.h"

namespace qlx99::tests {

using namespace testkit;

// The exports under their own names.
struct Exports {
  explicit Exports(HMODULE library) : module(library) {}

  FoundExport Find(const char* name) const { return {module, name}; }

  HMODULE module;
  decltype(&qlx99::MainWndProc) MainWndProc = Find("MainWndProc");
#define FOUND(name, delegate, arguments, fields, result) decltype(&qlx99::name) name = Find(#name);
  QLX99_EXPORTS(FOUND)
#undef FOUND
};

class Library {
 public:
  Library() = default;
  ~Library() { Free(); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  // Loads the library at the first use, so that the test can arrange the office before.
  const Exports* operator->();

  // Fails the test when the library stays loaded all the same.
  void Free();

 private:
  std::optional<Exports> exports_;
};

// Unload what the library leaves loaded by design, so that each test starts anew.
void UnloadRecordManager(const char* name);
void UnloadRecordManagers();

// By its bare name, as it lies beside the library, not beside this program.
void FindTheEmbeddedManager();

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
