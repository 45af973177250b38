// How long a call waits for programs that have a file locked or keep others out of it.
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

// Lets others go on for a millisecond, or as long as the system's clock needs for it.
void PauseBriefly();

class Patience {
 public:
  Patience() = default;
  explicit Patience(std::string_view file) : file_(std::hash<std::string_view>()(file)) {}

  // A wait begins.
  void Begin() { since_ = Clock::now(); }

  // Whether to try again; if so, a moment has passed.
  bool Lasts() const;

  // Says that others were in the way in another manner than by making this wait. The next try is
  // not worth more time than this one has taken.
  void GiveUp() const;

  // Whether the last try is so short ago that the next would find nothing else.
  bool IsSpent() const;

  // Whether any file was waited for in vain just now.
  static bool IsAnyInVain();

 private:
  void Remember(Clock::duration pause) const;

  std::size_t file_ = 0;
  Clock::time_point since_ = Clock::now();
};

}  // namespace recordmanager
