// A program of Windows while it runs, and what it writes.
#pragma once

#include <filesystem>
#include <string>

#include "platform/windows_api.h"

namespace qlx99::tests {

class StartedProgram {
 public:
  // What it writes goes to the file `output`.
  StartedProgram(std::string command, std::filesystem::path output);
  ~StartedProgram();
  StartedProgram(const StartedProgram&) = delete;
  StartedProgram& operator=(const StartedProgram&) = delete;

  void Kill() const { TerminateProcess(started_.hProcess, 1); }

  // What it has written so far, in UTF-8 and with "\n" behind each line.
  std::string Written() const;

  // When it has ended: everything.
  std::string WholeText() const;

 private:
  std::filesystem::path output_;
  PROCESS_INFORMATION started_{};
};

// How many processes of the machine run a file of this name.
int CountRunning(const std::string& fileName);

}  // namespace qlx99::tests
