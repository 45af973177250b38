#pragma once

#include <filesystem>

/// Keeps a test's registry apart from the user's own, where the registry is a file; on Windows it
/// does nothing, and tests keep to a key of their own.
class PrivateRegistry {
 public:
  static constexpr auto kKey = "SOFTWARE\\qlx99 tests";

  PrivateRegistry();
  ~PrivateRegistry();
  PrivateRegistry(const PrivateRegistry&) = delete;
  PrivateRegistry& operator=(const PrivateRegistry&) = delete;

  /// A folder of the test's own that holds the registration file and nothing else.
  const std::filesystem::path& Folder() const { return folder_; }

 private:
  std::filesystem::path folder_;
};
