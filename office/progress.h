// How far a long command is: told by whoever does the work, and shown to a person.
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>

namespace office {

// Told now and then how much is done. `done` grows from call to call, up to `all`.
using Progress = std::function<void(std::int64_t done, std::int64_t all)>;

// Draws one line over itself where `err` is a terminal; elsewhere, where all of it is kept, writes
// a whole line for each quarter of the work.
class ProgressLine {
 public:
  // `what` is counted, as in "12 of 20 cases".
  ProgressLine(std::ostream& err, std::string what);

  // As Progress is told.
  void Show(std::int64_t done, std::int64_t all);

 private:
  std::ostream& err_;
  std::string what_;
  bool drawsOver_;
  std::int64_t quarters_ = 0;
};

}  // namespace office
