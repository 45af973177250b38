#include <unistd.h>

#include <cstdlib>
#include <iostream>

#include "office/failure.h"
#include "office/host.h"
#include "platform/registry_file.h"

namespace office {

std::vector<std::string> CommandLineArguments(int count, char** texts) {
  return {texts + (count > 0 ? 1 : 0), texts + count};
}

void PrepareConsole() {}

bool ShowsColours(const std::ostream& out) {
  return &out == &std::cout && isatty(STDOUT_FILENO) != 0;
}

bool IsTerminal(const std::ostream& err) {
  return &err == &std::cerr && isatty(STDERR_FILENO) != 0;
}

bool HasScreen() { return true; }

bool HasInputEnded() { return std::cin.fail(); }

std::string NativeText(const std::filesystem::path& path) { return path.string(); }

std::string ShownText(const std::string& native) { return native; }

std::string RegistryPlace() {
  return "the registration file " + PathText(platform::RegistryFilePath());
}

void RequireReadableRegistry() {
  if (platform::ReadRegistryFile()) return;
  std::error_code error;
  const bool isFolder = std::filesystem::is_directory(platform::RegistryFilePath(), error);
  throw Failure("The registration file " + PathText(platform::RegistryFilePath()) +
                " cannot be read: " +
                (isFolder ? "it is a folder. Let QLX99_REGISTRY name a file."
                          : "check the rights on it, and that it is saved as ANSI (REGEDIT4)."));
}

// The file that nobody named need not be there: then there is no office yet.
void RequireRegistry() {
  RequireReadableRegistry();
  const char* named = std::getenv("QLX99_REGISTRY");
  std::error_code error;
  if (named == nullptr || *named == '\0' || std::filesystem::exists(named, error)) return;
  throw Failure("QLX99_REGISTRY names " + std::string(named) +
                ", and there is no such file. `qlx setup DIR` makes it.");
}

std::string VersionOf(const std::filesystem::path& /*file*/) { return {}; }

// Offices are on Windows.
bool IsOnNetworkDrive(const std::filesystem::path& /*folder*/) { return false; }

std::optional<AutomationServer> LookForAutomationServer() { return std::nullopt; }

}  // namespace office
