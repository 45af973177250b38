// Starting programs. Windows exist within one process here, so a program that talks through them
// runs within that process: a library with a WinMain, which is run to its end at once.
#include <bit>
#include <string>

#include "platform/windows_api.h"

UINT WINAPI WinExec(LPCSTR commandLine, UINT showCommand) {
  constexpr UINT kStarted = 33;  // any number above 31
  using Main = int WINAPI(HINSTANCE, HINSTANCE, LPSTR, int);
  std::string file = commandLine;
  std::erase(file, '"');
  HMODULE program = LoadLibraryA(file.c_str());
  if (program == nullptr) return ERROR_FILE_NOT_FOUND;
  auto* main = std::bit_cast<Main*>(GetProcAddress(program, "WinMain"));
  std::string noArguments;
  main(program, nullptr, noArguments.data(), static_cast<int>(showCommand));
  FreeLibrary(program);
  return kStarted;
}
