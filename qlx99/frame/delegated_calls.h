// The delegated kind: calls that the sibling library qlx02 answers once the user's login has been
// confirmed.
#pragma once

#include <cstdint>

#include "frame/call_gate.h"

namespace qlx99 {

// Confirms with the office's login server that the user is logged in under the case-management
// system. False means that the call must not be handed on.
bool ConfirmLogin();

// Hands the call on to the sibling library, under its own name for it, and stores the answer in
// `result`.
void ForwardCall(const char* exportName, const GateArguments& arguments, std::int32_t* result);

// Gives back what the delegated kind holds, when the process detaches the library.
void LeaveDelegation();

}  // namespace qlx99
