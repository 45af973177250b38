#include "recordmanager/patience.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>

namespace recordmanager {
namespace {

using namespace std::chrono_literals;

constexpr auto kLongestWait = 3s;
constexpr auto kImpatience = 1s;
constexpr auto kPause = 1ms;
constexpr auto kLongestPause = 50ms;

// A file that was waited for in vain, and when it was tried last. Each has a place of its own, as
// threads may try several in turns. Calls take turns, so that nobody else is at these.
struct Vain {
  std::size_t file = 0;
  Clock::time_point lastTry;
  Clock::duration pause{};  // until the next

  bool IsRecent(Clock::time_point now) const { return file != 0 && now - lastTry < kImpatience; }
};
constinit std::array<Vain, 16> inVain;

// The file's place or, if it has none, the one that was used least lately.
Vain& PlaceOf(std::size_t file) {
  auto* const found = std::ranges::find(inVain, file, &Vain::file);
  return found != inVain.end() ? *found : *std::ranges::min_element(inVain, {}, &Vain::lastTry);
}

// The time without the waits in vain, in which nobody else can try again either.
constinit Clock::duration waited{};
Clock::time_point TimeToTry() { return Clock::now() - waited; }

}  // namespace

void PauseBriefly() { sqlite3_sleep(kPause.count()); }

bool Patience::Lasts() const {
  const auto now = Clock::now();
  const Vain& last = PlaceOf(file_);
  const bool isInVain = last.file == file_ && last.IsRecent(TimeToTry());
  if (!isInVain && now - since_ < kLongestWait) {
    PauseBriefly();
    return true;
  }
  if (!isInVain) waited += now - since_;
  Remember(kPause);
  return false;
}

void Patience::GiveUp() const {
  if (IsSpent()) return;
  Remember(std::clamp<Clock::duration>(Clock::now() - since_, kPause, kLongestPause));
}

void Patience::Remember(Clock::duration pause) const {
  PlaceOf(file_) = {file_, TimeToTry(), pause};
}

bool Patience::IsSpent() const {
  const Vain& last = PlaceOf(file_);
  return last.file == file_ && TimeToTry() - last.lastTry < last.pause;
}

bool Patience::IsAnyInVain() {
  const auto now = TimeToTry();
  return std::ranges::any_of(inVain, [now](const Vain& file) { return file.IsRecent(now); });
}

}  // namespace recordmanager
