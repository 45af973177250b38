// What lies below the mapping root: the sibling interface library qlx02 and the office's inquiry
// program.
#pragma once

#include <array>

#include "frame/registry.h"
#include "platform/windows_api.h"

namespace qlx99 {

using MappingRoot = RegistryText<kMappingRoot>;

// "%s" stands for the mapping root.
inline constexpr const char* kInquiryProgram = "%s\\bin32\\telq32.exe";
// The root may have blanks.
inline constexpr const char* kInquiryCommand = "\"%s\\bin32\\telq32.exe\"";
inline constexpr const char* kSiblingFolder = "%s\\bin32";
inline constexpr const char* kSiblingFile = "%s\\bin32\\qlx02.dll";

// One of these with the root in place of "%s".
using MappingPath = std::array<char, kMappingRoot.size + sizeof "\"\\bin32\\telq32.exe\"">;
MappingPath PathBelow(const MappingRoot& root, const char* pattern);

// Loads the sibling library unless it is loaded. Its folder stays the current one, because it may
// load more of its parts from there. A failure shows when its first function is looked for.
void LoadSiblingLibrary(const MappingRoot& root);

// The sibling library's function of that name; null when there is none.
FARPROC SiblingFunction(const char* name);

// Called when the process detaches the library.
void FreeSiblingLibrary();

}  // namespace qlx99
