// A process that works on a record file beside the tests' own: this program, started anew.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace recordmanager_tests {

// Opens a file and takes a client's script (see party_file.h).
class Worker {
 public:
  // {FILE, SCRIPT}
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
