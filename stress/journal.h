// A worker's journal: a line before and after each write, so that whoever comes after a killed
// worker knows what it had been promised; and what it says that a keeper's slot holds.
#pragma once

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace stress {

class Journal {
 public:
  // Goes on with the journal of those before.
  explicit Journal(const std::filesystem::path& path)
      : file_(path, std::ios::binary | std::ios::app) {}

  // The line is the operating system's when this returns; killing the worker does not take it back.
  void Write(const std::string& line);

 private:
  std::ofstream file_;
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

// One change to the items, as it stands in the journal before it is begun: "+ 5 0" adds item 5,
// "- 5 0" removes it, "= 5 6" puts 6 in its place.
struct Change {
  char what = ' ';
  int item = 0;
  int by = 0;

  std::string Text() const;
  void ApplyTo(std::set<int>& items) const;
};

// The lines behind a change: it was acknowledged; or its worker was killed and it had not been
// done.
inline constexpr const char* kDone = "done";
inline constexpr const char* kNotDone = "not done";

class History {
 public:
  explicit History(const std::filesystem::path& journal) : journal_(journal) { ReadOn(); }

  // Takes what has been written since. Returns the items that the changes begun or ended since
  // concern.
  std::set<int> ReadOn();

  // What was acknowledged, and the change that has been begun since, if there is one.
  const std::set<int>& Items() const { return items_; }
  const Change& Open() const { return open_; }

  // The highest item ever named.
  int LastItem() const { return lastItem_; }

 private:
  JournalReader journal_;
  std::set<int> items_;
  Change open_;
  int lastItem_ = 0;
};

}  // namespace stress
