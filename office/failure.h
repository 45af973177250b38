// How a command ends early: with words for the person at the screen, which say what to do next.
#pragma once

#include <stdexcept>

namespace office {

// The command could not be carried out: exit code 1.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The command line asks for something that does not exist: exit code 2.
class WrongUsage : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace office
