#include <array>
#include <bit>
#include <utility>

#include "platform/windows_api.h"
#include "worker.h"

namespace recordmanager_tests {

Worker::Worker(const std::vector<std::string>& arguments) {
  std::array<char, MAX_PATH> program{};
  GetModuleFileNameA(nullptr, program.data(), MAX_PATH);
  std::string command = std::string("\"") + program.data() + "\" " + kWorkerOption;
  for (const std::string& argument : arguments) command += " \"" + argument + '"';
  STARTUPINFOA startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION started{};
  if (CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                     &startup, &started) != 0) {
    CloseHandle(started.hThread);
    process_ = std::bit_cast<std::intptr_t>(started.hProcess);
  }
}

int Worker::Wait() {
  if (process_ == 0) return -1;
  const auto process = std::bit_cast<HANDLE>(std::exchange(process_, 0));
  DWORD code = 0;
  WaitForSingleObject(process, INFINITE);
  GetExitCodeProcess(process, &code);
  CloseHandle(process);
  return static_cast<int>(code);
}

void Worker::Kill() {
  if (process_ == 0) return;
  TerminateProcess(std::bit_cast<HANDLE>(process_), 255);
  Wait();
}

}  // namespace recordmanager_tests
