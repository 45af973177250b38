#include "platform/resources.h"

#include <map>
#include <mutex>

#include "platform/byte_reader.h"
#include "platform/libraries.h"

namespace platform {

namespace {

struct Scripts {
  std::mutex mutex;
  std::map<HMODULE, ResourceBytes> byModule;
};

// Never destroyed: libraries may still take theirs out while the process ends.
Scripts& AllScripts() {
  static auto& scripts = *new Scripts;
  return scripts;
}

// A type or a name as a number, which stands behind a mark. A text fails the reader.
WORD TakeNumber(ByteReader& reader) {
  constexpr WORD kNumberMark = 0xFFFF;
  reader.Expect(reader.U16() == kNumberMark);
  return reader.U16();
}

ResourceBytes FindResourceIn(ResourceBytes script, WORD type, WORD id) {
  ByteReader reader(script);
  while (reader.Ok() && reader.Left() > 0) {
    const DWORD dataSize = reader.U32();
    const DWORD headerSize = reader.U32();
    ByteReader header(reader.Take(headerSize - 2 * sizeof(DWORD)));
    const ResourceBytes data = reader.Take(dataSize);
    reader.Align();
    const WORD foundType = TakeNumber(header);
    const WORD foundId = TakeNumber(header);
    if (header.Ok() && foundType == type && foundId == id) return data;
  }
  return {};
}

}  // namespace

ResourceBytes FindResourceOf(HMODULE module, WORD type, WORD id) {
  Scripts& scripts = AllScripts();
  const std::lock_guard lock(scripts.mutex);
  const auto found = scripts.byModule.find(module);
  return found == scripts.byModule.end() ? ResourceBytes{}
                                         : FindResourceIn(found->second, type, id);
}

EmbeddedResources::EmbeddedResources(ResourceBytes script) : module_(ModuleAt(script.data())) {
  const std::lock_guard lock(AllScripts().mutex);
  AllScripts().byModule[module_] = script;
}

EmbeddedResources::~EmbeddedResources() {
  const std::lock_guard lock(AllScripts().mutex);
  AllScripts().byModule.erase(module_);
}

}  // namespace platform
