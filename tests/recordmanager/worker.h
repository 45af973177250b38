// A process that works on a record file beside the tests' own: this program, started anew.
#pragma once

#include <string>
#include <vector>

#include "testkit/process.h"

namespace recordmanager_tests {

// Its work, for main() of a program that was started with the option; returns the exit code. Of
// {FILE, SCRIPT} or {FILE, SCRIPT, TIMES}: opens FILE and takes the client's script SCRIPT (see
// party_file.h), once or so many times.
inline constexpr const char* kWorkerOption = "--worker";
int Work(const std::vector<std::string>& arguments);

// Its exit code is 0 when all went well.
class Worker : public testkit::Process {
 public:
  explicit Worker(std::vector<std::string> arguments);
};

}  // namespace recordmanager_tests
