// What should not have happened, counted.
#pragma once

#include <iosfwd>
#include <map>

#include "stress/store.h"

namespace stress {

class Tally {
 public:
  void Note(Fault::Kind kind, int count = 1);

  // A process has ended of itself, with this code.
  void NoteEnd(int code);

  void Add(const Tally& other);

  bool IsEmpty() const { return counts_.empty(); }

  // One line, in which all should be 0.
  void Write(std::ostream& report) const;

 private:
  std::map<Fault::Kind, int> counts_;
};

}  // namespace stress
