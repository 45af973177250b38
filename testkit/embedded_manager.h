// The embedded record manager, found by its file.
#pragma once

#include <filesystem>

#include "btrieve/client.h"

namespace testkit {

// Where qlx99.dll and atbtrv32.dll lie.
std::filesystem::path ProductFolder();

// Its entry points, as long as ReleaseEmbedded is not called.
btrieve::BtrCall* EmbeddedCall();
btrieve::BtrCallId* EmbeddedCallId();
void ReleaseEmbedded();

// For clients, which may outlive that.
btrieve::EntryPoint EmbeddedEntryPoint();

}  // namespace testkit
