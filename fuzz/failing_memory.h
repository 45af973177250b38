// Memory that runs out on command, for C++ and for SQLite.
#pragma once

namespace fuzz {

// As long as it exists, the nth allocation from now on fails, and if `lasting` all behind it. With
// n = 0 none does.
class FailingMemory {
 public:
  FailingMemory(int nth, bool lasting);
  ~FailingMemory();
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;
};

// Once, before SQLite is used.
void LetMemoryFail();

}  // namespace fuzz
