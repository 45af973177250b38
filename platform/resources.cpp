#include "platform/resources.h"

#include <mutex>
#include <optional>
#include <vector>

#include "platform/byte_reader.h"
#include "platform/libraries.h"

namespace platform {

namespace {

struct Embedded {
  HMODULE module;
  ResourceBytes script;
};

struct AllEmbedded {
  std::mutex mutex;
  std::vector<Embedded> scripts;
};

// Never destroyed: libraries may still take theirs out while the process ends.
AllEmbedded& All() {
  static auto& all = *new AllEmbedded;
  return all;
}

// A type or a name is a number behind a mark, or a text, which stands for none of our numbers.
std::optional<WORD> TakeNumber(ByteReader& reader) {
  constexpr WORD kNumberMark = 0xFFFF;
  const WORD first = reader.U16();
  if (first == kNumberMark) return reader.U16();
  if (first != 0) reader.WideText();
  return std::nullopt;
}

ResourceBytes FindResourceIn(ResourceBytes script, WORD type, WORD id) {
  ByteReader reader(script);
  while (reader.Ok() && reader.Left() > 0) {
    const DWORD dataSize = reader.U32();
    const DWORD headerSize = reader.U32();
    ByteReader header(reader.Take(headerSize - 2 * sizeof(DWORD)));
    const ResourceBytes data = reader.Take(dataSize);
    reader.Align();
    const std::optional<WORD> foundType = TakeNumber(header);
    const std::optional<WORD> foundId = TakeNumber(header);
    if (foundType == type && foundId == id) return data;
  }
  return {};
}

}  // namespace

ResourceBytes FindResourceOf(HMODULE module, WORD type, WORD id) {
  AllEmbedded& all = All();
  const std::lock_guard lock(all.mutex);
  for (const Embedded& embedded : all.scripts) {
    const ResourceBytes found =
        embedded.module == module ? FindResourceIn(embedded.script, type, id) : ResourceBytes{};
    if (!found.empty()) return found;
  }
  return {};
}

EmbeddedResources::EmbeddedResources(ResourceBytes script) : script_(script) {
  AllEmbedded& all = All();
  const std::lock_guard lock(all.mutex);
  all.scripts.push_back({ModuleAt(script.data()), script});
}

EmbeddedResources::~EmbeddedResources() {
  AllEmbedded& all = All();
  const std::lock_guard lock(all.mutex);
  std::erase_if(all.scripts,
                [this](const Embedded& known) { return known.script.data() == script_.data(); });
}

}  // namespace platform
