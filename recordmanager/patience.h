// How long a call waits for others that have a file locked, or deny it to everybody else.
//
// The first try may take three seconds. Callers repeat a busy call many thousand times; after a
// wait in vain, the tries that follow for the same file are answered at once, or they would take
// hours.
#pragma once

#include <chrono>
#include <cstddef>
#include <string_view>

namespace recordmanager {

using Clock = std::chrono::steady_clock;

class Patience {
 public:
  Patience() = default;
  explicit Patience(std::string_view file) : file_(std::hash<std::string_view>()(file)) {}

  // A wait begins.
  void Begin() { since_ = Clock::now(); }

  // Whether to try again; if so, a moment has passed.
  bool Lasts() const;

  // Whether the last try is so short ago that the next would find nothing else.
  bool IsSpent() const;

 private:
  std::size_t file_ = 0;
  Clock::time_point since_ = Clock::now();
};

}  // namespace recordmanager
