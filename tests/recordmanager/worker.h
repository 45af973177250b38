// A process that works on a record file beside the tests' own: this program, started anew.
#pragma once

#include <string>
#include <vector>

#include "stress/host.h"

namespace recordmanager_tests {

// Opens FILE and takes the client's script SCRIPT (see party_file.h) until it has succeeded TIMES
// times, again whenever it was busy or came second. Writes the outcomes, each at once, to LOG. Its
// exit code is 0 when all went well.
class Worker : public stress::Process {
 public:
  // {FILE, SCRIPT} or {FILE, SCRIPT, TIMES, LOG}
  explicit Worker(std::vector<std::string> arguments);
};

// Its work, for main() of a program that was started with this option. Returns the exit code.
inline constexpr const char* kWorkerOption = "--worker";
int Work(const std::vector<std::string>& arguments);

}  // namespace recordmanager_tests
