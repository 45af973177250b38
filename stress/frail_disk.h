// A disk whose power may go at any moment. What was synchronised is there afterwards; of the rest
// each write, sector and name may be there or not.
#pragma once

#include <deque>
#include <filesystem>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "stress/hooked_files.h"

namespace stress {

class FrailDisk : public HookedFiles {
 public:
  // All that lies in the folder is safe now. With `forgetful`, synchronising has no effect.
  FrailDisk(std::filesystem::path folder, unsigned seed, bool forgetful);
  ~FrailDisk() override;
  FrailDisk(const FrailDisk&) = delete;
  FrailDisk& operator=(const FrailDisk&) = delete;

  // The power goes at the nth request from now on that writes, synchronises, makes or removes
  // something. From then on every request fails.
  void CutAt(int nth) { left_ = nth; }
  bool IsOff() const { return off_; }

  // When those who had files open have gone: leaves in the folder what the disk has kept, and
  // switches the power on.
  void Restart();

  int Answer(const Request& request) override;
  void NoteOpened(const sqlite3_file* file, const char* path) override;

 private:
  struct Change {
    std::int64_t place = 0;            // or the size that is left
    std::optional<std::string> bytes;  // none: all behind the place was cut off
  };
  // Of a file, whatever it is called.
  struct Content {
    std::string safe;
    std::vector<Change> unsafe;
  };
  using Names = std::map<std::string, Content*>;

  static constexpr unsigned kSome = 1;
  static constexpr unsigned kAll = 2;

  bool IsOurs(const Request& request) const;
  void Take(const Request& request);
  void CountDown();
  void Cut();
  Names PresentNames();
  Content* ContentOf(const std::filesystem::path& path);
  void Settle();
  bool IsKept() { return random_() % 2 < luck_; }
  void Keep(const Change& write, std::string& content);
  std::string Kept(const Content& content);
  std::string KeptMemory(const std::filesystem::path& path);

  std::filesystem::path folder_;
  std::filesystem::path links_;  // the contents by their numbers, also those that lost their names
  std::mt19937 random_;
  bool forgetful_;
  int left_ = 0;
  bool off_ = false;
  unsigned luck_ = kAll;  // of what is not safe; 0: nothing is kept
  std::deque<Content> contents_;
  std::map<const sqlite3_file*, Content*> open_;
  Names names_;                              // as they are safe
  std::map<std::string, std::string> kept_;  // by name, when the power has gone
};

}  // namespace stress
