// The embedded record manager, found by its file, for the tests' own use.
#pragma once

#include <filesystem>

#include "recordmanager/btrieve.h"

namespace qlx99::tests {

// Where qlx99.dll and atbtrv32.dll lie.
std::filesystem::path ProductFolder();

// Its entry points, as long as ReleaseEmbedded is not called.
btrieve::BtrCall* EmbeddedCall();
btrieve::BtrCallId* EmbeddedCallId();
void ReleaseEmbedded();

}  // namespace qlx99::tests
