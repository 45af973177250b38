// The configuration that the library reads, written for the office in a folder.
#pragma once

#include <filesystem>
#include <string>

namespace office {

enum class Replacing { kNothing, kAnything };

// Writes the registry values and returns the lines that say what was written and where, and what
// stood there before. Fails when the folder holds no record files or the registry cannot be written
// and, before anything is written, when another value is there that may not be replaced; shows it.
std::string SetUp(const std::filesystem::path& directory, Replacing replacing);

}  // namespace office
