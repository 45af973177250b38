#include "program.h"

#include "platform/windows_api.h"

namespace automation {

std::wstring ProgramPath() {
  constexpr DWORD kLongest = 32768;
  std::wstring path(kLongest, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), kLongest));
  return path;
}

std::wstring ProgramFolder() {
  const std::wstring path = ProgramPath();
  return path.substr(0, path.rfind(L'\\') + 1);
}

}  // namespace automation
