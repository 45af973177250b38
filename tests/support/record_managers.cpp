#include "support/record_managers.h"

#include <gtest/gtest.h>

#include <bit>
#include <map>
#include <utility>

#include "store/record_manager.h"
#include "support/world.h"

namespace qlx99::tests {
namespace {

namespace fs = std::filesystem;

HMODULE embedded = nullptr;

template <class Function>
Function* EmbeddedEntryPoint(const char* name) {
  if (embedded == nullptr) {
    embedded = LoadLibraryA((ProductFolder() / world::LibraryFile("atbtrv32")).string().c_str());
  }
  return std::bit_cast<Function*>(GetProcAddress(embedded, name));
}

void Unload(const char* name) {
  constexpr int kMoreThanAnyoneLoads = 1000;
  for (int i = 0; i < kMoreThanAnyoneLoads; ++i) {
    HMODULE library = GetModuleHandleA(name);
    if (library == nullptr) return;
    FreeLibrary(library);
  }
  ADD_FAILURE() << name << " stays loaded, and with it what it remembers";
}

}  // namespace

fs::path ProductFolder() { return (world::ProgramFolder() / ".." / "bin").lexically_normal(); }

btrieve::BtrCall* EmbeddedCall() {
  return EmbeddedEntryPoint<btrieve::BtrCall>(btrieve::kBtrCallName);
}

btrieve::BtrCallId* EmbeddedCallId() {
  return EmbeddedEntryPoint<btrieve::BtrCallId>(btrieve::kBtrCallIdName);
}

void ReleaseEmbedded() {
  if (embedded != nullptr) FreeLibrary(std::exchange(embedded, nullptr));
}

void UnloadRecordManagers() {
  ReleaseEmbedded();
  for (const char* name : kRecordManagerNames) Unload(name);
}

void FindTheEmbeddedManager() { SetDllDirectoryA(ProductFolder().string().c_str()); }

FoundManagers::FoundManagers() : folder_(world::MakeFolder()) {}

FoundManagers::~FoundManagers() {
  FindTheEmbeddedManager();
  std::error_code error;
  fs::remove_all(folder_, error);
}

const fs::path& FoundManagers::Are(const std::vector<PlacedManager>& managers) {
  static const std::map<PlacedManager::Kind, std::string> kFiles{
      {PlacedManager::kComplete, "scripted_manager"},
      {PlacedManager::kWithoutBtrCall, "manager_without_btrcall"},
      {PlacedManager::kWithoutBtrCallId, "manager_without_btrcallid"}};
  for (const auto& entry : fs::directory_iterator(folder_)) fs::remove(entry);
  for (const PlacedManager& manager : managers) {
    fs::copy_file(world::ProgramFolder() / world::LibraryFile(kFiles.at(manager.kind)),
                  folder_ / world::LibraryFile(manager.name));
  }
  ReleaseEmbedded();
  SetDllDirectoryA(folder_.string().c_str());
  return folder_;
}

}  // namespace qlx99::tests
