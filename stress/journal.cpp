#include "stress/journal.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace stress {
namespace {

Change ChangeIn(const std::string& line) {
  Change change;
  std::istringstream(line) >> change.what >> change.item >> change.by;
  return change;
}

}  // namespace

void Journal::Write(const std::string& line) {
  if (!(file_ << line + '\n' << std::flush)) throw std::runtime_error("cannot write a journal");
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

std::string Change::Text() const {
  return std::string(1, what) + ' ' + std::to_string(item) + ' ' + std::to_string(by);
}

void Change::ApplyTo(std::set<int>& items) const {
  if (what != '+') items.erase(item);
  if (what == '+') items.insert(item);
  if (what == '=') items.insert(by);
}

std::set<int> History::ReadOn() {
  std::set<int> concerned{open_.item, open_.by};
  for (const std::string& line : journal_.NewLines()) {
    if (line == kDone) open_.ApplyTo(items_);
    open_ = line == kDone || line == kNotDone ? Change{} : ChangeIn(line);
    concerned.insert({open_.item, open_.by});
    lastItem_ = std::max({lastItem_, open_.item, open_.by});
  }
  return concerned;
}

}  // namespace stress
