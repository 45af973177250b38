// The class in the registry, where clients look for it.
#pragma once

#include "platform/windows_api.h"

namespace automation {

// Registers this program where it lies, in the place of any other: for all users or, without rights
// to do that, for the current one. Returns what happened.
enum class Registered { kForAllUsers, kForThisUser, kNot };
Registered Register();

// Removes what Register wrote, whoever it was for. Returns whether nothing is left.
bool Unregister();

}  // namespace automation
