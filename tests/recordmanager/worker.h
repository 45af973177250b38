// A process that works on a record file beside the tests' own: this program, started anew.
#pragma once

#include <string>
#include <vector>

#include "testkit/process.h"

namespace recordmanager_tests {

// Its work, for main() of a program that was started with the option. Both return the exit code.
//
// Work, {FILE, SCRIPT} or {FILE, SCRIPT, TIMES, LOG}: opens FILE and takes the client's script
// SCRIPT (see party_file.h) until it has succeeded TIMES times, again whenever it was busy or came
// second. Writes the outcomes, each at once, to LOG.
//
// Leave, {FILE, LOG}: leaves main() while a thread inserts into FILE and writes to LOG, with an
// object that calls still later.
inline constexpr const char* kWorkerOption = "--worker";
int Work(const std::vector<std::string>& arguments);
inline constexpr const char* kLeaverOption = "--leaver";
int Leave(const std::vector<std::string>& arguments);

// Its exit code is 0 when all went well.
class Worker : public testkit::Process {
 public:
  explicit Worker(std::vector<std::string> arguments, const char* option = kWorkerOption);
};

}  // namespace recordmanager_tests
