// A disk whose power may go at any moment. What was synchronised is there afterwards; of the rest
// each write, sector and name may be there or not.
#pragma once

#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <variant>
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
  struct Write {
    std::int64_t place = 0;
    std::string bytes;
  };
  struct Truncation {
    std::int64_t size = 0;
  };
  struct Content {
    std::string safe;
    std::vector<std::variant<Write, Truncation>> unsafe;
  };
  using Identity = std::string;  // of a file, whatever it is called
  using Names = std::map<std::string, Identity>;

  enum class Luck { kAll, kNone, kSome };

  bool IsOurs(const Request& request) const;
  void Take(const Request& request);
  void TakeNames();
  void CountDown();
  void Cut();
  Names PresentNames();
  Content& Know(const Identity& identity, const std::filesystem::path& path);
  bool IsKept(Luck luck) {
    return luck == Luck::kAll || (luck == Luck::kSome && random_() % 2 == 0);
  }
  void Keep(const Write& write, std::string& content);
  std::string Kept(const Content& content, Luck luck);
  std::string KeptMemory(const std::filesystem::path& path);

  std::filesystem::path folder_;
  std::filesystem::path
      links_;  // keep the files of lost names, so that no new one is taken for them
  std::mt19937 random_;
  bool forgetful_;
  bool namesNeedSync_;
  int left_ = 0;
  bool off_ = false;
  std::map<const sqlite3_file*, Identity> open_;
  std::map<Identity, Content> contents_;
  Names names_;                              // as they are safe
  std::map<std::string, std::string> kept_;  // by name, when the power has gone
};

}  // namespace stress
