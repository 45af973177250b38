#include "support/embedded_manager.h"

#include <bit>
#include <utility>

#include "support/world.h"

namespace qlx99::tests {
namespace {

HMODULE embedded = nullptr;

template <class Function>
Function* EntryPoint(const char* name) {
  if (embedded == nullptr) {
    embedded = LoadLibraryA((ProductFolder() / world::LibraryFile("atbtrv32")).string().c_str());
  }
  return std::bit_cast<Function*>(GetProcAddress(embedded, name));
}

}  // namespace

std::filesystem::path ProductFolder() {
  return (world::ProgramFolder() / ".." / "bin").lexically_normal();
}

btrieve::BtrCall* EmbeddedCall() { return EntryPoint<btrieve::BtrCall>(btrieve::kBtrCallName); }

btrieve::BtrCallId* EmbeddedCallId() {
  return EntryPoint<btrieve::BtrCallId>(btrieve::kBtrCallIdName);
}

void ReleaseEmbedded() {
  if (embedded != nullptr) FreeLibrary(std::exchange(embedded, nullptr));
}

}  // namespace qlx99::tests
