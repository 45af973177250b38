// Whole files, read and written at once.
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

}  // namespace testkit
