// A process that works on a record file beside the tests' own: this program, started anew.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace recordmanager_tests {

// Opens FILE and takes the client's script SCRIPT (see party_file.h) until it has succeeded TIMES
// times, again whenever it was busy or came second. Writes the outcomes, each at once, to LOG.
class Worker {
 public:
  // {FILE, SCRIPT} or {FILE, SCRIPT, TIMES, LOG}
  explicit Worker(const std::vector<std::string>& arguments);
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  ~Worker() { Kill(); }

  // Waits for its end; returns its exit code, 0 when all went well, or -1 if it did not end by
  // itself.
  int Wait();
  void Kill();

 private:
  std::intptr_t process_ = 0;
};

// Whether this process is one, and its work, for main(). Returns the exit code.
inline constexpr const char* kWorkerOption = "--worker";
int Work(const std::vector<std::string>& arguments);

}  // namespace recordmanager_tests
