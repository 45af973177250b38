// The tool's command line.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace office {

// Exit codes.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;

// Runs one command. `arguments` come without the program's name; all texts are UTF-8. Data goes to
// `out`, and to `err` what a person must know. Returns the exit code; throws nothing.
int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace office
