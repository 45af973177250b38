// Whether an installation can work: registry, record manager and every record file; in the
// delegated kind, what lies below the mapping root.
#pragma once

#include <iosfwd>

namespace office {

// Writes a line for everything that was looked at, with a "!" before those that are not as they
// must be, and returns whether there is none of these.
bool CheckOffice(std::ostream& out);

}  // namespace office
