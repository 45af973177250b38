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

constexpr const char* kFrame = "qlx-copy";
constexpr const char* kClaim = "lock";
constexpr const char* kName = "files";

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

WorkingFolder::WorkingFolder(const fs::path& target, std::function<void()> letGo)
    : target_(WholePath(target)),
      isWithin_(fs::is_directory(target_)),
      frame_((isWithin_ ? target_ : target_.parent_path()) / kFrame),
      path_(frame_ / kName),
      letGo_(std::move(letGo)) {
  std::error_code error;
  const bool isOther = fs::symlink_status(target_, error).type() != fs::file_type::not_found;
  if (target_ == frame_ || (isOther && !isWithin_)) {
    throw Failure(PathText(target_) + " cannot be the folder. Nothing was copied; name another.");
  }
  // Tried before anything is copied: its name or the rights may not allow it.
  if (!isWithin_ && !(fs::create_directory(target_, error) && fs::remove(target_, error))) {
    throw Failure("The folder " + PathText(target_) + " cannot be made: " + error.message());
  }
  Claim();
  if (Clear() && fs::create_directory(path_, error)) return;
  throw Failure("The folder " + PathText(path_) +
                " cannot be made anew: a file in it is in use, or nothing can be written there.");
}

void WorkingFolder::Claim() {
  std::error_code error;
  const bool isNew = fs::create_directory(frame_, error);
  if (error) {
    throw Failure("The folder " + PathText(frame_) + " cannot be made: " + error.message());
  }
  if (!isNew && !fs::exists(frame_ / kClaim) && !fs::is_empty(frame_)) {
    throw Failure("There is a folder " + PathText(frame_) +
                  ", and what is in it is no copy that was interrupted. Move it away.");
  }
  if (claim_.emplace(frame_ / kClaim).IsHeld()) return;
  fs::remove(frame_, error);  // if nobody has put anything in it
  throw Failure("Something is being copied in " + PathText(frame_) +
                ", or nothing can be written there. Wait for its end, or name another folder.");
}

WorkingFolder::~WorkingFolder() {
  Clear();
  claim_.reset();
  std::error_code error;
  fs::remove(frame_, error);
}

bool WorkingFolder::Clear() {
  return Eventually([this] {
    std::error_code error;
    fs::remove_all(path_, error);
    return !error;
  });
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
