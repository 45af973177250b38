#include "testkit/embedded_manager.h"

#include <utility>

#include "testkit/found_export.h"
#include "testkit/process.h"

namespace testkit {
namespace {

HMODULE embedded = nullptr;

FoundExport Find(const char* name) {
  if (embedded == nullptr) {
    embedded = LoadLibraryA((ProductFolder() / LibraryFile("atbtrv32")).string().c_str());
  }
  return {embedded, name};
}

}  // namespace

std::filesystem::path ProductFolder() {
  return (ProgramFolder() / ".." / "bin").lexically_normal();
}

btrieve::BtrCall* EmbeddedCall() { return Find(btrieve::kBtrCallName); }

btrieve::BtrCallId* EmbeddedCallId() { return Find(btrieve::kBtrCallIdName); }

void ReleaseEmbedded() {
  if (embedded != nullptr) FreeLibrary(std::exchange(embedded, nullptr));
}

btrieve::EntryPoint EmbeddedEntryPoint() {
  return [](const btrieve::Arguments& arguments) {
    return btrieve::EntryPointOf(EmbeddedCall())(arguments);
  };
}

}  // namespace testkit
