// A worker's journal: a line before and after each write, so that whoever comes after a killed
// worker knows what it had been promised.
#pragma once

#include <cstdio>
#include <filesystem>
#include <ios>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace stress {

class Journal {
 public:
  // Goes on with the journal of those before.
  explicit Journal(const std::filesystem::path& path);

  // The line is the operating system's when this returns; killing the worker does not take it back.
  void Write(const std::string& line);

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Closer> file_;
};

class JournalReader {
 public:
  explicit JournalReader(std::filesystem::path path) : path_(std::move(path)) {}

  // The complete lines behind those that it has given before; none when there is no such journal.
  std::vector<std::string> NewLines();

 private:
  std::filesystem::path path_;
  std::streamoff read_ = 0;
};

inline std::vector<std::string> ReadJournal(const std::filesystem::path& path) {
  return JournalReader(path).NewLines();
}

}  // namespace stress
