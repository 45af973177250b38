// What tests, trials, fuzzers and measurements need of the host: this program, processes that can
// be killed, and a registry of one's own.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "testkit/files.h"

namespace testkit {

// This program's file, and its folder.
std::filesystem::path ProgramPath();
inline std::filesystem::path ProgramFolder() { return ProgramPath().parent_path(); }

// The file's name of a library that Windows knows as `name`.dll.
std::string LibraryFile(const std::string& name);

// This program, started once more with these arguments. Killed when it still runs at its end.
class Process {
 public:
  explicit Process(const std::vector<std::string>& arguments);
  Process(Process&& other) noexcept : process_(std::exchange(other.process_, 0)) {}
  Process& operator=(Process&& other) noexcept {
    std::swap(process_, other.process_);
    return *this;
  }
  ~Process() { Kill(); }

  // How it ended, if not with an exit code.
  static constexpr int kKilled = -1;
  static constexpr int kCrashed = -2;

  // Waits for its end; returns its exit code or one of the above. Who has not ended in time is
  // ended, and counts as crashed.
  int Wait(std::chrono::milliseconds most = std::chrono::hours(1));

  // Ends it at once, wherever it is. Returns the same, as it may have ended before.
  int Kill();

 private:
  std::intptr_t process_ = 0;
};

// Makes two equal processes of this one. Returns whether this is the child; nothing where there is
// no such thing.
std::optional<bool> Fork();

// From now on the registry of this process is one of its own, empty at first; where that is a file,
// it is "office.reg" in `folder`.
void UsePrivateRegistry(const std::filesystem::path& folder);
void DropPrivateRegistry();

// As long as it exists, this process has it; empty at first. One at a time.
class PrivateRegistry {
 public:
  PrivateRegistry() { UsePrivateRegistry(Folder()); }
  ~PrivateRegistry() { DropPrivateRegistry(); }
  PrivateRegistry(const PrivateRegistry&) = delete;
  PrivateRegistry& operator=(const PrivateRegistry&) = delete;

  // Holds, where the registry is a file, that file and nothing else.
  const std::filesystem::path& Folder() const { return folder_.Path(); }

 private:
  TemporaryFolder folder_;
};

}  // namespace testkit
