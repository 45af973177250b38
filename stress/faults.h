// A record file on a disk that fails: full, with an error, or out of reach, at every request of an
// ordinary day's work in turn.
#pragma once

#include <filesystem>
#include <iosfwd>

namespace stress {

// Tries all faults in the folder and writes a report. True when whatever failed said so by one of
// the published statuses, nothing acknowledged was lost, nothing was done by halves, no file was
// damaged and the next process could work at once.
bool RunFaults(const std::filesystem::path& folder, std::ostream& report);

}  // namespace stress
