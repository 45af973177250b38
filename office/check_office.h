// Whether an installation can work: the library, the automation server, the registry, the record
// manager and every record file; in the delegated kind, what lies below the mapping root.
#pragma once

#include <iosfwd>
#include <string>

namespace office {

// Writes a line for everything that was looked at, with a "!" before those that are not as they
// must be and a "?" before those that somebody should know of, and returns whether there is none of
// the former. `library` is the one that macros load, as ExaminedLibrary takes it.
bool CheckOffice(const std::string& library, std::ostream& out);

}  // namespace office
