#include "recordmanager/held_read.h"

#include <utility>

namespace recordmanager {
namespace {

using namespace std::chrono_literals;

constexpr auto kLongest = 20ms;

}  // namespace

void HeldRead::Check(Connection& connection) {
  if (statement_ != nullptr && IsStale(connection)) End();
}

bool HeldRead::IsStale(Connection& connection) const {
  return connection.ReadLogState() != state_ || Clock::now() - since_ > kLongest;
}

void HeldRead::Prepare(Connection& connection) {
  if (statement_ == nullptr) {
    // Before the read begins: a change that comes between is taken for one that the read misses.
    state_ = connection.ReadLogState();
    since_ = Clock::now();
  }
}

void HeldRead::Hold(Statement& statement, const Entry& entry) {
  if (state_ == LogState{}) {
    statement.Reset();
    return;
  }
  Statement* before = std::exchange(statement_, &statement);
  entry_ = entry;
  if (before != nullptr && before != &statement) {
    before->Reset();  // not earlier, so that both have seen the same state
  }
}

void HeldRead::End() {
  if (Statement* statement = std::exchange(statement_, nullptr); statement != nullptr) {
    statement->Reset();
  }
}

}  // namespace recordmanager
