#include <bit>
#include <utility>

#include "host.h"
#include "support/world.h"

namespace recordmanager_tests::host {
namespace {

HANDLE ToHandle(std::intptr_t process) { return std::bit_cast<HANDLE>(process); }

}  // namespace

Worker::Worker(const std::vector<std::string>& arguments) {
  std::string command =
      '"' + (qlx99::tests::world::ProgramFolder() / "record_manager_worker.exe").string() + '"';
  for (const std::string& argument : arguments) {
    command += " \"" + argument + '"';
  }
  STARTUPINFOA startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION started{};
  if (CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                     &startup, &started) != 0) {
    CloseHandle(started.hThread);
    process_ = std::bit_cast<std::intptr_t>(started.hProcess);
  }
}

Worker::~Worker() { Kill(); }

int Worker::Wait() {
  if (process_ == 0) {
    return -1;
  }
  const HANDLE handle = ToHandle(std::exchange(process_, 0));
  DWORD code = 0;
  WaitForSingleObject(handle, INFINITE);
  GetExitCodeProcess(handle, &code);
  CloseHandle(handle);
  return static_cast<int>(code);
}

void Worker::Kill() {
  if (process_ != 0) {
    TerminateProcess(ToHandle(process_), 255);
    Wait();
  }
}

}  // namespace recordmanager_tests::host
