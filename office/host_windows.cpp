#include "office/host.h"
#include "office/text_encoding.h"
#include "platform/windows_api.h"
// <windows.h> first: this builds on it.
#include <shellapi.h>

#include <iostream>

namespace office {
namespace {

std::string ToUtf8(const wchar_t* wide) {
  const int needed = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(needed), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide, -1, text.data(), needed, nullptr, nullptr);
  text.pop_back();  // the terminator
  return text;
}

}  // namespace

// The texts that main is given are in the system's code page; the system itself has all characters.
std::vector<std::string> CommandLineArguments(int /*count*/, char** /*texts*/) {
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(ToUtf8(wide[i]));
  LocalFree(wide);
  return arguments;
}

void PrepareConsole() { SetConsoleOutputCP(CP_UTF8); }

bool ShowsColours(const std::ostream& out) {
  HANDLE const console = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD mode = 0;
  return &out == &std::cout && GetConsoleMode(console, &mode) != 0 &&
         SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

bool IsTerminal(const std::ostream& err) {
  DWORD mode = 0;
  return &err == &std::cerr && GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

// Services and tasks without a logged-in user have a window station that nobody sees, or none.
bool HasScreen() {
  USEROBJECTFLAGS flags{};
  return GetUserObjectInformationA(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags,
                                   nullptr) != 0 &&
         (flags.dwFlags & WSF_VISIBLE) != 0;
}

bool HasInputEnded() { return false; }

std::string NativeText(const std::filesystem::path& path) { return Encode(PathText(path)); }

std::string ShownText(const std::string& native) { return Decode(native); }

std::string RegistryPlace() { return "the registry"; }

void RequireReadableRegistry() {}

void RequireRegistry() {}

std::string VersionOf(const std::filesystem::path& file) {
  std::vector<char> block(GetFileVersionInfoSizeW(file.c_str(), nullptr));
  void* found = nullptr;
  UINT size = 0;
  if (GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) == 0 ||
      VerQueryValueW(block.data(), L"\\", &found, &size) == 0) {
    return {};
  }
  const auto& facts = *static_cast<const VS_FIXEDFILEINFO*>(found);
  return std::to_string(HIWORD(facts.dwFileVersionMS)) + "." +
         std::to_string(LOWORD(facts.dwFileVersionMS)) + "." +
         std::to_string(HIWORD(facts.dwFileVersionLS));
}

bool IsOnNetworkDrive(const std::filesystem::path& folder) {
  std::wstring root(folder.native().size() + MAX_PATH, L'\0');
  return GetVolumePathNameW(folder.c_str(), root.data(), static_cast<DWORD>(root.size())) != 0 &&
         GetDriveTypeW(root.c_str()) == DRIVE_REMOTE;
}

// Nobody else can open it while this is open.
HeldFile::HeldFile(const std::filesystem::path& path)
    : path_(path),
      handle_(reinterpret_cast<std::intptr_t>(
          CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                      FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr))) {
  static_assert(kNone == -1);  // INVALID_HANDLE_VALUE
}

// Whoever takes it in between keeps it, as what is open cannot be removed.
HeldFile::~HeldFile() {
  if (!IsHeld()) return;
  CloseHandle(reinterpret_cast<HANDLE>(handle_));
  DeleteFileW(path_.c_str());
}

}  // namespace office
