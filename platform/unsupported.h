// How a program ends that asks more of Windows than `platform` knows.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace platform {

// Ends the process with "`function`: `what` is not supported" on stderr. For calls that Windows
// would answer and this layer does not know: a friendly wrong answer would be found much later.
[[noreturn]] inline void Unsupported(const char* function, const std::string& what) {
  std::fprintf(stderr, "%s: %s is not supported on this system\n", function, what.c_str());
  std::abort();
}

}  // namespace platform
