#include "stress/journal.h"

#include <fstream>
#include <stdexcept>

namespace stress {

Journal::Journal(const std::filesystem::path& path)
    : file_(std::fopen(path.string().c_str(), "ab")) {
  if (file_ == nullptr) throw std::runtime_error("cannot write " + path.string());
}

void Journal::Write(const std::string& line) {
  const std::string bytes = line + '\n';
  if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size() ||
      std::fflush(file_.get()) != 0) {
    throw std::runtime_error("cannot write a journal");
  }
}

std::vector<std::string> JournalReader::NewLines() {
  std::vector<std::string> lines;
  std::ifstream file(path_, std::ios::binary);
  file.seekg(read_);
  for (std::string line; std::getline(file, line) && !file.eof();) {
    read_ += static_cast<std::streamoff>(line.size() + 1);
    lines.push_back(line);
  }
  return lines;
}

}  // namespace stress
