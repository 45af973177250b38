// The configuration that the library reads, written for the office in a folder.
#pragma once

#include <filesystem>
#include <string>

namespace office {

// Writes the registry values and returns the lines that say what was written and where. Fails when
// the folder holds no record files or the registry cannot be written.
std::string SetUp(const std::filesystem::path& directory);

}  // namespace office
