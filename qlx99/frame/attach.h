// What the library knows of itself from the moment a process attaches it: its own handle and the
// installation kind.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/windows_api.h"

namespace qlx99 {

enum class InstallKind : std::int32_t {
  kLocal = 1,      // the library reads and writes the record files itself
  kDelegated = 2,  // every call is handed on to the sibling library
};

// Set when the process attaches the library, never changed afterwards.
struct Attachment {
  HINSTANCE module = nullptr;
  InstallKind installKind = InstallKind::kLocal;
};

const Attachment& CurrentAttachment();

// The kind that a configured program name means: delegated when the name of the office's inquiry
// program, TELQ32, stands anywhere in it, in upper or lower case. No name, the usual case in a
// small office, means local.
InstallKind InstallKindOf(std::string_view programName);

enum class Detachment {
  kFreed,        // the process goes on without the library's code
  kProcessEnds,  // only what is the library's own is released
};

// Called by the library's entry point, or by a program that has the library built in.
void AttachLibrary(HINSTANCE module);
void DetachLibrary(Detachment why);

}  // namespace qlx99
