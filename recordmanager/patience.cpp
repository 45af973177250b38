#include "recordmanager/patience.h"

#include <sqlite3.h>

namespace recordmanager {
namespace {

using namespace std::chrono_literals;

constexpr auto kLongestWait = 3s;
constexpr auto kImpatience = 1s;
constexpr auto kPause = 1ms;

// The file that was last waited for in vain, and when it was tried last. Calls take turns, so that
// nobody else is at these.
constinit std::size_t fileInVain = 0;
constinit Clock::time_point lastTry;

}  // namespace

bool Patience::Lasts() const {
  const auto now = Clock::now();
  const bool isInVain = fileInVain == file_ && now - lastTry < kImpatience;
  if (!isInVain && now - since_ < kLongestWait) {
    sqlite3_sleep(kPause.count());
    return true;
  }
  fileInVain = file_;
  lastTry = now;
  return false;
}

bool Patience::IsSpent() const { return fileInVain == file_ && Clock::now() - lastTry < kPause; }

}  // namespace recordmanager
