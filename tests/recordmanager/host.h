// What these tests need of the host: the record manager's entry points, and processes of their own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "recordmanager/btrieve.h"

namespace recordmanager_tests::host {

btrieve::BtrCall* EntryPoint();
btrieve::BtrCallId* EntryPointWithClient();

// The folder that this program lies in.
std::string ProgramFolder();

// The worker program (worker.cpp), started with these arguments. Killed when it still runs at the
// end.
class Worker {
 public:
  explicit Worker(const std::vector<std::string>& arguments);
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  ~Worker();

  // Waits for its end; returns its exit code, or -1 if it did not end by itself.
  int Wait();
  void Kill();

 private:
  std::intptr_t process_ = 0;
};

}  // namespace recordmanager_tests::host
