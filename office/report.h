// A table of what was looked at and what was found, which remembers whether all was well.
#pragma once

#include <iosfwd>
#include <string>

#include "office/failure.h"

namespace office {

class Report {
 public:
  explicit Report(std::ostream& out);

  void Good(const std::string& what, const std::string& found);
  // With a "?": it works, but somebody should know.
  void Doubtful(const std::string& what, const std::string& found);
  // With a "!": it does not work.
  void Bad(const std::string& what, const std::string& wrong);

  // Reports what `look` returns as good, and what it throws as bad. Returns whether it was good.
  template <class Look>
  bool Add(const std::string& what, const Look& look) {
    try {
      Good(what, look());
      return true;
    } catch (const Failure& failure) {
      Bad(what, failure.what());
      return false;
    }
  }

  // Whether nothing was bad.
  bool IsSound() const { return sound_; }

 private:
  void Write(const char* colour, const char* mark, const std::string& what,
             const std::string& words);

  std::ostream& out_;
  bool inColour_;
  bool sound_ = true;
};

}  // namespace office
