#include "frame/delegated_calls.h"

namespace qlx99 {

// Nothing confirms a login yet, so in the delegated kind every call is refused and gives 0.
bool ConfirmLogin() { return false; }

void ForwardCall(const char* /*exportName*/, const GateArguments& /*arguments*/,
                 std::int32_t* result) {
  *result = 0;
}

void LeaveDelegation() {}

}  // namespace qlx99
