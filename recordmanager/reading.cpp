#include "recordmanager/reading.h"

#include <array>

namespace recordmanager {
namespace {

// Where a read starts from.
enum class Start : std::uint8_t { kKeyBuffer, kPosition, kEnd };

struct ReadRule {
  Bound bound;
  Start start;
};

// In the order of the operations' codes.
constexpr std::array<ReadRule, 9> kRules = {{
    {Bound::kWithin, Start::kKeyBuffer},  // Get Equal
    {Bound::kAfter, Start::kPosition},    // Get Next
    {Bound::kBefore, Start::kPosition},   // Get Previous
    {Bound::kAfter, Start::kKeyBuffer},   // Get Greater
    {Bound::kFrom, Start::kKeyBuffer},    // Get Greater or Equal
    {Bound::kBefore, Start::kKeyBuffer},  // Get Less
    {Bound::kUpTo, Start::kKeyBuffer},    // Get Less or Equal
    {Bound::kFrom, Start::kEnd},          // Get First
    {Bound::kUpTo, Start::kEnd},          // Get Last
}};

bool GoesDown(Bound bound) { return bound == Bound::kUpTo || bound == Bound::kBefore; }

// "Greater" and "less or equal" pass over all duplicates of the value, "less" and "greater or
// equal" over none.
Search SearchFromKeyBuffer(const Key& key, Bound bound, const std::uint8_t* value) {
  const bool beyondDuplicates = bound == Bound::kAfter || bound == Bound::kUpTo;
  return {bound, beyondDuplicates ? key.Highest(value) : key.Lowest(value), key.Highest(value)};
}

int PlanSearch(const Call& call, const RecordFile& file, const Key& key, const Cursor& cursor,
               Search& search) {
  const ReadRule& rule = kRules[static_cast<std::size_t>(call.operation - btrieve::kGetEqual)];
  switch (rule.start) {
    case Start::kKeyBuffer:
      search = SearchFromKeyBuffer(key, rule.bound, call.keyBuffer);
      break;
    case Start::kPosition:
      if (cursor.keyNumber != key.Number()) {
        return cursor.keyNumber == Cursor::kNoKey ? btrieve::kInvalidPositioning
                                                  : btrieve::kDifferentKeyNumber;
      }
      search = file.StepFrom(key, rule.bound, cursor.entry, cursor.current);
      break;
    case Start::kEnd:
      search = {rule.bound, GoesDown(rule.bound) ? Entry::AfterAll() : Entry::BeforeAll(), {}};
      break;
  }
  return btrieve::kSuccess;
}

// The cursor after a search that found nothing.
int LeaveRecords(Bound bound, const Key& key, Cursor& cursor) {
  cursor.current = {};
  if (bound == Bound::kWithin) {
    cursor.keyNumber = Cursor::kNoKey;
    return btrieve::kKeyNotFound;
  }
  cursor.keyNumber = key.Number();
  cursor.entry = GoesDown(bound) ? Entry::BeforeAll() : Entry::AfterAll();
  return btrieve::kEndOfFile;
}

}  // namespace

int ReadRecord(const Call& call, RecordFile& file, Cursor& cursor) {
  const Key* key = file.Layout().FindKey(call.keyNumber);
  if (key == nullptr) return btrieve::kInvalidKeyNumber;
  if (!call.KeyBufferHolds(*key)) return btrieve::kKeyBufferTooShort;
  Search search;
  if (const int status = PlanSearch(call, file, *key, cursor, search);
      status != btrieve::kSuccess) {
    return status;
  }
  const int status = file.Read(*key, search, call.Data(), cursor.current, cursor.entry);
  if (status == btrieve::kEndOfFile) return LeaveRecords(search.bound, *key, cursor);
  if (status == btrieve::kSuccess) {
    cursor.keyNumber = key->Number();
    call.SetDataLength(file.Layout().RecordLength());
    call.ReturnKey(*key, call.dataBuffer);
  }
  return status;
}

}  // namespace recordmanager
