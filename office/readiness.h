// Whether there is anything that the library could read. The library tells a user what is missing,
// but gives a program the same result as for a case that does not exist.
#pragma once

#include <filesystem>

namespace office {

// The folder that "DataRoot" names; fails when it is not configured.
std::filesystem::path ConfiguredDataRoot();

// The same; fails also when there is no such folder.
std::filesystem::path ExistingDataRoot();

// Fails with what is missing: the configuration, the folder of the record files or, where the
// library needs it, the record manager.
void RequireReadableOffice();

}  // namespace office
