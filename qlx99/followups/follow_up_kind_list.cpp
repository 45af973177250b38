// ZtkodoliInit and ZtkodoliNext: how many kinds of follow-up the catalogue has, and the kind at a
// position in the order of their IDs, for instance to offer them in a selection.
#include "followups/follow_up_kind_file.h"
#include "frame/arguments.h"
#include "frame/call_gate.h"
#include "frame/exports.h"
#include "store/record_file.h"
#include "store/result_line.h"

namespace qlx99 {
namespace {

std::int32_t CountFollowUpKinds() {
  if (!EnsureRecordManager()) return 0;
  const auto dataRoot = ReadDataRoot(kNoDataPathForUsers);
  if (!dataRoot) return 0;
  RecordFile<FollowUpKindRecord> kinds(*dataRoot);
  if (!kinds.IsOpen()) return 0;
  return CountRecords(kinds.WalkAll(FollowUpKindRecord::byId));
}

// Composes nothing for a position beyond the last kind.
void ReadFollowUpKind(std::int32_t position, ResultLine& dest) {
  const auto dataRoot = ReadDataRoot(kNoDataPathForFollowUps);
  if (!dataRoot) return;
  RecordFile<FollowUpKindRecord> kinds(*dataRoot);
  if (!kinds.IsOpen()) return;
  if (!WalkToPosition(kinds.WalkAll(FollowUpKindRecord::byId), position)) return;

  const auto& kind = kinds.Current();
  dest.AddField(kind[FollowUpKindRecord::name]);
  dest.AddNumber(kind[FollowUpKindRecord::number]);
  dest.AppendNumber(kind[FollowUpKindRecord::id]);
}

std::int32_t DeliverFollowUpKind(const char* index, char* buffer) {
  if (!EnsureRecordManager()) return 0;
  ResultLine kind;
  ReadFollowUpKind(LeadingNumber(index), kind);
  return HandOver(kind, buffer, HandOverForm::kLineOnly);
}

}  // namespace

std::int32_t WINAPI ZtkodoliInit() { return PassGate("ZtkodoliInit", CountFollowUpKinds); }

std::int32_t WINAPI ZtkodoliNext(const char* index, char* record) {
  return PassGate("ZtkodoliNext", DeliverFollowUpKind, index, record);
}

}  // namespace qlx99
