// The delegated kind's calls: each export's work is done by the sibling library, under a name of
// its own.
#pragma once

#include <cstdint>

#include "frame/call_gate.h"

namespace qlx99 {

// Hands the call on to the sibling library's function for that export, with the arguments as they
// are, and stores its answer in `result`. Where there is no such function the user is told, and
// `result` stays as it is.
void ForwardCall(const char* exportName, const GateArguments& arguments, std::int32_t* result);

}  // namespace qlx99
