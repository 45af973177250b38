#include "support/library.h"

#include <gtest/gtest.h>

#include "store/record_manager.h"

namespace qlx99::tests {
namespace {

namespace fs = std::filesystem;

fs::path libraryFolder;  // empty for the product's

}  // namespace

const Exports* Library::operator->() {
  if (!exports_) {
    const fs::path folder = libraryFolder.empty() ? ProductFolder() : libraryFolder;
    exports_.emplace(LoadLibraryA((folder / LibraryFile("qlx99")).string().c_str()));
  }
  return &*exports_;
}

void Library::Free() {
  if (!exports_) return;
  FreeLibrary(exports_->module);
  exports_.reset();
  EXPECT_EQ(GetModuleHandleA("qlx99.dll"), nullptr) << "qlx99 stays loaded";
}

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

void FindTheEmbeddedManager() { SetDllDirectoryA(ProductFolder().string().c_str()); }

FoundManagers::~FoundManagers() {
  libraryFolder.clear();
  FindTheEmbeddedManager();
}

const fs::path& FoundManagers::Are(const std::vector<PlacedManager>& managers) {
  const std::string library = LibraryFile("qlx99");
  for (const auto& entry : fs::directory_iterator(folder_.Path())) {
    if (entry.path().filename() != library) fs::remove(entry);
  }
  // A copy, as beside the product lies the embedded record manager.
  fs::copy_file(ProductFolder() / library, folder_.Path() / library,
                fs::copy_options::skip_existing);
  libraryFolder = folder_.Path();
  for (const PlacedManager& manager : managers) {
    fs::copy_file(ProgramFolder() / LibraryFile(manager.made),
                  folder_.Path() / LibraryFile(manager.name));
  }
  ReleaseEmbedded();
  SetDllDirectoryA(folder_.Path().string().c_str());
  return folder_.Path();
}

}  // namespace qlx99::tests
