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

std::optional<DataRoot> ReadDataRoot(const Message& missing) {
  auto dataRoot = ReadConfiguration<kDataRoot>();
  if (!dataRoot) ShowMessage(missing);
  return dataRoot;
}

}  // namespace qlx99
