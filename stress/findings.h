// The faults that a trial looks for.
#pragma once

#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>

namespace stress {

class Fault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A call that was refused with a status; some trials allow that.
class Refusal : public Fault {
 public:
  Refusal(const std::string& call, int itsStatus)
      : Fault(call + " gave " + std::to_string(itsStatus)), status(itsStatus) {}

  int status;
};

// Prints each fault at once, and counts them.
class Findings {
 public:
  void Note(const std::string& what) {
    ++count_;
    std::cout << "FOUND: " << what << std::endl;
  }

  // A process has ended with this code.
  void NoteEnd(int code) {
    if (code != 0) Note("a process ended with " + std::to_string(code));
  }

  // Notes what the action throws, as found by `where`.
  void Try(const std::string& where, const std::function<void()>& action) {
    try {
      action();
    } catch (const std::exception& found) {
      Note(where + ": " + found.what());
    }
  }

  int Count() const { return count_; }

 private:
  int count_ = 0;
};

}  // namespace stress
