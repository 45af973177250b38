// What differs between the systems that the tool runs on.
#pragma once

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace office {

// The command line without the program's name, in UTF-8.
std::vector<std::string> CommandLineArguments(int count, char** texts);

// Lets a console show UTF-8.
void PrepareConsole();

// Whether `out` is standard output and goes to a screen that obeys escape sequences for colours.
bool ShowsColours(const std::ostream& out);

// Whether `err` is standard error and goes to a terminal, whose line can be overwritten.
bool IsTerminal(const std::ostream& err);

// Whether somebody may see a message box. On a system without windows they appear on the terminal.
bool HasScreen();

// Whether somebody was asked on the terminal and gave no answer.
bool HasInputEnded();

// A path as the record manager and the registry take it.
std::string NativeText(const std::filesystem::path& path);

// The same for people, of any text.
std::string ShownText(const std::string& native);

// Where the registry is kept, for people.
std::string RegistryPlace();

// Fails when the registry is a file that cannot be read.
void RequireReadableRegistry();

// Fails also when it is a file that was named but is not there.
void RequireRegistry();

// The version that a program or library says of itself; empty when it says none, as no file does
// but on Windows.
std::string VersionOf(const std::filesystem::path& file);

// Whether the folder is another machine's.
bool IsOnNetworkDrive(const std::filesystem::path& folder);

// A file that one program at a time holds, until it lets go of it or ends, however that is.
class HeldFile {
 public:
  // Makes the file unless it is there. It is not held when somebody else has it, or when it cannot
  // be made.
  explicit HeldFile(const std::filesystem::path& path);
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

  // Removes it if it was held.
  ~HeldFile();

  bool IsHeld() const { return handle_ != kNone; }

 private:
  static constexpr std::intptr_t kNone = -1;

  std::filesystem::path path_;
  std::intptr_t handle_ = kNone;
};

// Who is registered for the automation object qlx99.Library, and what came of asking for one.
struct AutomationServer {
  std::filesystem::path program;  // empty: nobody
  std::string error;              // empty: it answers; otherwise the system's number
};

// Nothing where there is no automation.
std::optional<AutomationServer> LookForAutomationServer();

// Paths are given and shown in UTF-8.
inline std::filesystem::path PathOf(std::string_view utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}
inline std::string PathText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

// What NativeText gives, as a path. The system's own conversion does not know the office's code
// page.
inline std::filesystem::path PathOfNative(const std::string& native) {
  return PathOf(ShownText(native));
}

}  // namespace office
