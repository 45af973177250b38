#include "office/working_folder.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

#include "office/failure.h"
#include "office/host.h"

namespace office {
namespace {

namespace fs = std::filesystem;

constexpr const char* kName = "qlx-copy";

// Absolute, and without a separator at its end.
fs::path WholePath(const fs::path& path) {
  fs::path whole = fs::absolute(path).lexically_normal();
  return whole.has_filename() ? whole : whole.parent_path();
}

// `rename` replaces files, but what this makes nobody else does.
bool Move(const fs::path& from, const fs::path& to) {
  std::error_code error;
  if (!fs::exists(to, error)) fs::rename(from, to, error);
  return !error && !fs::exists(from, error);
}

}  // namespace

WorkingFolder::WorkingFolder(const fs::path& target, std::function<void()> letGo)
    : target_(WholePath(target)),
      isWithin_(fs::is_directory(target_)),
      path_((isWithin_ ? target_ : target_.parent_path()) / kName),
      letGo_(std::move(letGo)) {
  std::error_code error;
  const bool isOther = fs::symlink_status(target_, error).type() != fs::file_type::not_found;
  if (target_ == path_ || (isOther && !isWithin_)) {
    throw Failure(PathText(target_) + " cannot be the folder. Nothing was copied; name another.");
  }
  if (fs::create_directory(path_, error)) return;
  if (!error) {
    throw Failure("There is a folder " + PathText(path_) +
                  ": something is being copied, or was interrupted. If nothing is, remove it.");
  }
  throw Failure("The folder " + PathText(path_) + " cannot be made: " + error.message());
}

WorkingFolder::~WorkingFolder() {
  Eventually([this] {
    std::error_code error;
    fs::remove_all(path_, error);
    return !error;
  });
}

// For some seconds: a record manager keeps files open for a moment, a virus scanner looks at them.
template <class Attempt>
bool WorkingFolder::Eventually(const Attempt& attempt) {
  using namespace std::chrono_literals;
  constexpr auto kPatience = 10s;
  constexpr auto kPause = 100ms;
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (!attempt()) {
    if (std::chrono::steady_clock::now() > end) return false;
    letGo_();
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

// A file with something in it that is none of these belongs to a record manager at work, as its log
// does.
bool WorkingFolder::HoldsOnly(const std::vector<fs::path>& names) const {
  return std::ranges::all_of(fs::directory_iterator(path_), [&](const fs::directory_entry& entry) {
    return std::ranges::find(names, entry.path().filename()) != names.end() ||
           (entry.is_regular_file() && entry.file_size() == 0);
  });
}

void WorkingFolder::MoveFiles(const std::vector<fs::path>& names) {
  for (auto name = names.begin(); name != names.end(); ++name) {
    if (Eventually([&] { return Move(path_ / *name, target_ / *name); })) continue;
    std::for_each(names.begin(), name,
                  [this](const fs::path& moved) { Move(target_ / moved, path_ / moved); });
    throw Failure(PathText(target_ / *name) + " cannot be made: it is there, or " +
                  PathText(path_ / *name) + " is in use.");
  }
}

void WorkingFolder::Deliver(const std::vector<fs::path>& names) {
  if (!Eventually([&] { return HoldsOnly(names); })) {
    throw Failure("The record manager does not let go of the files in " + PathText(path_) + ".");
  }
  if (isWithin_) return MoveFiles(names);
  if (Eventually([this] { return Move(path_, target_); })) return;
  throw Failure("The folder " + PathText(path_) + " cannot be renamed to " + PathText(target_) +
                ": it is there, or a file in it is in use.");
}

}  // namespace office
