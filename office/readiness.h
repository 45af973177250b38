// Whether there is anything that the library could read. It tells a user what is missing, and gives
// a program the same result as for a case that does not exist.
#pragma once

namespace office {

// Fails with what is missing: the configuration, the folder of the record files or, where the
// library needs it, the record manager.
void RequireReadableOffice();

}  // namespace office
