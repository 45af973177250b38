#include "support/record_managers.h"

#include <gtest/gtest.h>

#include "store/record_manager.h"
#include "support/world.h"

namespace qlx99::tests {
namespace fs = std::filesystem;

void UnloadRecordManager(const char* name) {
  constexpr int kMoreThanAnyoneLoads = 1000;
  for (int i = 0; i < kMoreThanAnyoneLoads; ++i) {
    HMODULE library = GetModuleHandleA(name);
    if (library == nullptr) return;
    FreeLibrary(library);
  }
  ADD_FAILURE() << name << " stays loaded, and with it what it remembers";
}

void UnloadRecordManagers() {
  ReleaseEmbedded();
  for (const char* name : kRecordManagerNames) UnloadRecordManager(name);
}

namespace {

fs::path libraryFolder;  // empty for the product's

}  // namespace

fs::path LibraryFolder() { return libraryFolder.empty() ? ProductFolder() : libraryFolder; }

void FindTheEmbeddedManager() { SetDllDirectoryA(ProductFolder().string().c_str()); }

FoundManagers::~FoundManagers() {
  libraryFolder.clear();
  FindTheEmbeddedManager();
}

const fs::path& FoundManagers::Are(const std::vector<PlacedManager>& managers) {
  const std::string library = world::LibraryFile("qlx99");
  for (const auto& entry : fs::directory_iterator(folder_.Path())) {
    if (entry.path().filename() != library) fs::remove(entry);
  }
  // A copy, as beside the product lies the embedded record manager.
  fs::copy_file(ProductFolder() / library, folder_.Path() / library,
                fs::copy_options::skip_existing);
  libraryFolder = folder_.Path();
  for (const PlacedManager& manager : managers) {
    fs::copy_file(world::ProgramFolder() / world::LibraryFile(manager.made),
                  folder_.Path() / world::LibraryFile(manager.name));
  }
  ReleaseEmbedded();
  SetDllDirectoryA(folder_.Path().string().c_str());
  return folder_.Path();
}

}  // namespace qlx99::tests
