// The end of a call that this layer does not know.
#pragma once

#include <string>

namespace platform {

// Ends the process with "`function`: `what` is not supported" on stderr. For calls that Windows
// would answer and this layer does not know: a friendly wrong answer would be found much later.
[[noreturn]] void Unsupported(const char* function, const std::string& what);

}  // namespace platform
