// A read that stays open on the record it found, so that the next one along the key is a step
// instead of a search under new locks.
//
// It keeps the file as it was when the read began, and nobody else from writing meanwhile. No stale
// record is ever given out: before each use it is seen whether anybody has written since, which in
// WAL mode stands in memory that all users of a file share. As long as it lasts, the log cannot be
// emptied; so it is ended with the walk, at the latest by the first call after some milliseconds.
#pragma once

#include "recordmanager/key.h"
#include "recordmanager/sql.h"

namespace recordmanager {

class HeldRead {
 public:
  // Ends the read when it has grown old, or stale.
  void Check(Connection& connection);

  // Whether `statement` stands on the record with this entry: then its next row is the one behind.
  bool StandsOn(const Statement& statement, const Entry& entry) const {
    return statement_ == &statement && entry_ == entry;
  }

  bool Uses(const Statement& statement) const { return statement_ == &statement; }

  // To be called before the first step of a read that may be held.
  void Prepare(Connection& connection);

  // Holds the read that stands on the record with this entry, in place of the one that was held.
  // Ends it instead when it cannot be seen whether it grows stale.
  void Hold(Statement& statement, const Entry& entry);

  void End();

 private:
  bool IsStale(Connection& connection) const;

  Statement* statement_ = nullptr;
  Entry entry_;
  Clock::time_point since_;
  LogState state_;
};

}  // namespace recordmanager
