// Who makes the library object.
#pragma once

#include "desk.h"

namespace automation {

// Offers the class to one client, on a thread of its own: Windows calls objects of such a thread on
// threads that know who calls. The desk ends when nobody comes; it has to last as long as the
// process.
void OfferClass(Desk& desk);

}  // namespace automation
