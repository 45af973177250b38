#include "support/started_program.h"

#include <gtest/gtest.h>

#include <fstream>

#include "office/text_encoding.h"
// <windows.h> first: this builds on it.
#include <tlhelp32.h>

namespace qlx99::tests {

StartedProgram::StartedProgram(std::string command, std::filesystem::path output)
    : output_(std::move(output)) {
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE file = CreateFileA(output_.string().c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                            CREATE_ALWAYS, 0, nullptr);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = startup.hStdError = file;
  EXPECT_NE(CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                           &startup, &started_),
            FALSE)
      << command;
  CloseHandle(file);
}

StartedProgram::~StartedProgram() {
  Kill();
  CloseHandle(started_.hThread);
  CloseHandle(started_.hProcess);
}

std::string StartedProgram::Written() const {
  std::ifstream file(output_);
  std::string text;
  for (std::string line; std::getline(file, line);) {
    text += office::Decode(line, office::CodePage::kOem) + '\n';
  }
  return text;
}

std::string StartedProgram::WholeText() const {
  WaitForSingleObject(started_.hProcess, INFINITE);
  return Written();
}

int CountRunning(const std::string& fileName) {
  int count = 0;
  HANDLE processes = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32 process{};
  process.dwSize = sizeof process;
  for (BOOL more = Process32First(processes, &process); more != FALSE;
       more = Process32Next(processes, &process)) {
    if (process.szExeFile == fileName) ++count;
  }
  CloseHandle(processes);
  return count;
}

}  // namespace qlx99::tests
