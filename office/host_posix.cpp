#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>

#include "office/failure.h"
#include "office/host.h"
#include "platform/registry_file.h"

namespace office {
namespace {

// A file may be removed between its opening and its locking; then the lock is nobody's.
bool LiesAt(const std::filesystem::path& path, int file) {
  struct stat opened {};
  struct stat there {};
  return fstat(file, &opened) == 0 && lstat(path.c_str(), &there) == 0 &&
         opened.st_dev == there.st_dev && opened.st_ino == there.st_ino;
}

}  // namespace

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

HeldFile::HeldFile(const std::filesystem::path& path) : path_(path) {
  constexpr mode_t kForAll = 0666;
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kForAll);
  if (file < 0) return;
  if (flock(file, LOCK_EX | LOCK_NB) == 0 && LiesAt(path, file)) {
    handle_ = file;
  } else {
    close(file);
  }
}

// Removed before it is let go of, so that nobody takes it in between.
HeldFile::~HeldFile() {
  if (!IsHeld()) return;
  unlink(path_.c_str());
  close(static_cast<int>(handle_));
}

std::optional<AutomationServer> LookForAutomationServer() { return std::nullopt; }

}  // namespace office
