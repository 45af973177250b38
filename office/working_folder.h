// A folder in which something is made that nobody is to find half done.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "office/host.h"

namespace office {

// Beside the folder that is to be made, or within it when it is there: somebody may have given it
// rights, or it is all that a record manager's server shows. Its name is short and plain, as record
// managers want their paths.
//
// It lies in a folder "qlx-copy", which also has a file that this program holds. What a program has
// left that was killed, nobody holds: the next one clears it away.
class WorkingFolder {
 public:
  // Fails when it cannot be made, or is another program's. `letGo` makes whoever has files of the
  // folder open close those that he does not use any more; it is called again and again.
  WorkingFolder(const std::filesystem::path& target, std::function<void()> letGo);
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

  // Removes it, with all that is still in it.
  ~WorkingFolder();

  const std::filesystem::path& Path() const { return path_; }

  // Puts the files of these names to where they belong. Fails, and leaves all as it was before,
  // when one of them is there already or cannot be put there.
  void Deliver(const std::vector<std::filesystem::path>& names);

 private:
  void Claim();
  bool Clear();
  bool HoldsOnly(const std::vector<std::filesystem::path>& names) const;
  void MoveFiles(const std::vector<std::filesystem::path>& names);
  template <class Attempt>
  bool Eventually(const Attempt& attempt);

  std::filesystem::path target_;
  bool isWithin_;
  std::filesystem::path frame_;  // what the working folder lies in
  std::filesystem::path path_;
  std::optional<HeldFile> claim_;
  std::function<void()> letGo_;
};

}  // namespace office
