// Whole files, read and written at once, and folders of one's own.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace testkit {

// A file's bytes; none when it cannot be read.
inline std::string ReadAll(const std::filesystem::path& name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void WriteAll(const std::filesystem::path& name, const std::string& bytes) {
  std::ofstream(name, std::ios::binary) << bytes;
}

// Empty, and used by nobody else, until the end of its scope. What cannot be removed then, because
// a file is still open, goes at the end of the program.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  std::string Text() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace testkit
