#include <bit>

#include "platform/windows_api.h"
#include "testkit/process.h"

namespace testkit {
namespace {

constexpr UINT kExitCodeOfKilled = 0xDEAD;

HANDLE ToHandle(std::intptr_t process) { return std::bit_cast<HANDLE>(process); }

// A key of the user, which for this process stands in the place of the machine's part of the
// registry.
std::string KeyOfThisProcess() {
  return "Software\\qlx99 testkit " + std::to_string(GetCurrentProcessId());
}

}  // namespace

std::filesystem::path ProgramPath() {
  std::string path(MAX_PATH, '\0');
  path.resize(GetModuleFileNameA(nullptr, path.data(), MAX_PATH));
  return path;
}

std::string LibraryFile(const std::string& name) { return name + ".dll"; }

Process::Process(const std::vector<std::string>& arguments) {
  std::string command = '"' + ProgramPath().string() + '"';
  for (const std::string& argument : arguments) command += " \"" + argument + '"';
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION started{};
  if (CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                     &startup, &started) != 0) {
    CloseHandle(started.hThread);
    process_ = std::bit_cast<std::intptr_t>(started.hProcess);
  }
}

int Process::Wait(std::chrono::milliseconds most) {
  if (process_ == 0) return kCrashed;
  const HANDLE handle = ToHandle(process_);
  if (WaitForSingleObject(handle, static_cast<DWORD>(most.count())) != WAIT_OBJECT_0) {
    Kill();
    return kCrashed;
  }
  DWORD code = 0;
  GetExitCodeProcess(handle, &code);
  CloseHandle(handle);
  process_ = 0;
  return code == kExitCodeOfKilled ? kKilled : static_cast<int>(code);
}

int Process::Kill() {
  if (process_ != 0) TerminateProcess(ToHandle(process_), kExitCodeOfKilled);
  return Wait();
}

std::optional<bool> Fork() { return std::nullopt; }

void UsePrivateRegistry(const std::filesystem::path& /*folder*/) {
  DropPrivateRegistry();  // of a process that had the same number and crashed
  HKEY key = nullptr;
  RegCreateKeyExA(HKEY_CURRENT_USER, KeyOfThisProcess().c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                  nullptr, &key, nullptr);
  RegOverridePredefKey(HKEY_LOCAL_MACHINE, key);
  RegCloseKey(key);
}

void DropPrivateRegistry() {
  RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  RegDeleteTreeA(HKEY_CURRENT_USER, KeyOfThisProcess().c_str());
}

}  // namespace testkit
