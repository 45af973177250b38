#include "frame/registry.h"

namespace qlx99 {

LSTATUS ReadRegistryValue(HKEY root, const char* keyPath, const char* valueName, DWORD type,
                          char* buffer, DWORD size) {
  HKEY key = nullptr;
  const LSTATUS opened = RegOpenKeyExA(root, keyPath, 0, KEY_READ, &key);
  if (opened != ERROR_SUCCESS) return opened;

  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the registry counts bytes, not
  // characters
  auto* const bytes = reinterpret_cast<BYTE*>(buffer);
  const LSTATUS queried = RegQueryValueExA(key, valueName, nullptr, &type, bytes, &size);
  RegCloseKey(key);
  return queried;
}

WholeText ReadWholeText(const RegistryValue& value) {
  for (DWORD size = value.size;; size *= 2) {
    // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): as for FreeMemory
    WholeText text(static_cast<char*>(std::calloc(size + 1, 1)));
    if (text == nullptr) return nullptr;
    const LSTATUS status =
        ReadRegistryValue(HKEY_LOCAL_MACHINE, value.keyPath, value.name, REG_SZ, text.get(), size);
    if (status == ERROR_SUCCESS) return text;
    if (status != ERROR_MORE_DATA) return nullptr;
  }
}

std::optional<DataRoot> ReadDataRoot(const Message& missing) {
  auto dataRoot = ReadConfiguration<kDataRoot>();
  if (!dataRoot) ShowMessage(missing);
  return dataRoot;
}

}  // namespace qlx99
