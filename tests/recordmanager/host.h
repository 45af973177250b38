// What these tests work with: the record manager's entry points, and processes of their own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/embedded_manager.h"

namespace recordmanager_tests::host {

inline btrieve::BtrCall* EntryPoint() { return qlx99::tests::EmbeddedCall(); }
inline btrieve::BtrCallId* EntryPointWithClient() { return qlx99::tests::EmbeddedCallId(); }

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
