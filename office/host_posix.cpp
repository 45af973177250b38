#include <unistd.h>

#include <cstdlib>
#include <iostream>

#include "office/host.h"

namespace office {

std::vector<std::string> CommandLineArguments(int count, char** texts) {
  return {texts + (count > 0 ? 1 : 0), texts + count};
}

void PrepareConsole() {}

bool ShowsColours(const std::ostream& out) {
  return &out == &std::cout && isatty(STDOUT_FILENO) != 0;
}

std::string NativeText(const std::filesystem::path& path) { return path.string(); }

std::string RegistryPlace() {
  const char* file = std::getenv("QLX99_REGISTRY");
  if (file != nullptr && *file != '\0') return std::string("the registration file ") + file;
  return "your registration file (the environment variable QLX99_REGISTRY names another)";
}

std::string VersionOf(const std::filesystem::path& /*file*/) { return {}; }

// Offices are on Windows.
bool IsOnNetworkDrive(const std::filesystem::path& /*folder*/) { return false; }

std::optional<AutomationServer> LookForAutomationServer() { return std::nullopt; }

}  // namespace office
