// The office's configuration, all of it in the registry below HKEY_LOCAL_MACHINE. Nothing is ever
// written there, and nothing but the installation kind is remembered: each call reads what it
// needs.
#pragma once

#include <array>
#include <cstdlib>
#include <memory>
#include <optional>

#include "frame/messages.h"
#include "platform/windows_api.h"

namespace qlx99 {

// One value of the configuration: where it lies and how many bytes of it are read at most. Only the
// program's name is read whole, because TELQ32 may stand at the end of a long path.
struct RegistryValue {
  const char* keyPath;
  const char* name;
  DWORD size;
};

inline constexpr const char* kOptionsKey = "SOFTWARE\\Quorvane\\Stelvora\\Options";
inline constexpr const char* kMappingKey = "SOFTWARE\\Morvelix GmbH\\Palvenor\\Options";

inline constexpr RegistryValue kProgramName{kOptionsKey, "ProgramName", 20};
inline constexpr RegistryValue kProgramRoot{kOptionsKey, "ProgramRoot", 260};
inline constexpr RegistryValue kDocuRoot{kOptionsKey, "DocuRoot", 260};
inline constexpr RegistryValue kDataRoot{kOptionsKey, "DataRoot", 200};
inline constexpr RegistryValue kMappingRoot{kMappingKey, "MappingRoot", 260};

// A value as it was read: zero-filled, and one byte longer than what is read, because a stored text
// may lack its terminator.
template <const RegistryValue& value>
using RegistryText = std::array<char, value.size + 1>;

using DataRoot = RegistryText<kDataRoot>;

// Reads `valueName` of the key `keyPath` below `root` into `buffer`, at most `size` bytes. The
// bytes are taken as they are: `type` names the type that the caller expects, but the stored one is
// not compared with it. Returns 0, or the error code of the open or of the query, whichever failed;
// the buffer's content is then not to be used.
LSTATUS ReadRegistryValue(HKEY root, const char* keyPath, const char* valueName, DWORD type,
                          char* buffer, DWORD size);

// The configured text, or nothing when it cannot be read.
template <const RegistryValue& value>
std::optional<RegistryText<value>> ReadConfiguration() {
  RegistryText<value> text{};
  const LSTATUS status = ReadRegistryValue(HKEY_LOCAL_MACHINE, value.keyPath, value.name, REG_SZ,
                                           text.data(), value.size);
  if (status != ERROR_SUCCESS) return std::nullopt;
  return text;
}

// A text of any length, zero-terminated; null when it cannot be read.
struct FreeMemory {
  // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): operator new would bring the exception runtime
  void operator()(char* text) const { std::free(text); }
};
using WholeText = std::unique_ptr<char, FreeMemory>;
WholeText ReadWholeText(const RegistryValue& value);

// The directory of the record files. When it is not configured, the user is told so in the caller's
// words.
std::optional<DataRoot> ReadDataRoot(const Message& missing);

}  // namespace qlx99
