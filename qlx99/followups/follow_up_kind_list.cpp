// ZtkodoliInit and ZtkodoliNext: how many kinds of follow-up the catalogue has, and the kind at a
// position in the order of their IDs, for instance to offer them in a selection.
#include "followups/follow_up_kind_file.h"
#include "frame/call_gate.h"
#include "frame/exports.h"
#include "store/catalogue.h"

namespace qlx99 {
namespace {

std::int32_t CountFollowUpKinds() {
  return CountCatalogue<FollowUpKindRecord>(FollowUpKindRecord::byId, kNoDataPathForUsers);
}

void ComposeFollowUpKind(const Record<FollowUpKindRecord>& kind, ResultLine& dest) {
  dest.AddField(kind[FollowUpKindRecord::name]);
  dest.AddNumber(kind[FollowUpKindRecord::number]);
  dest.AppendNumber(kind[FollowUpKindRecord::id]);
}

std::int32_t DeliverFollowUpKind(const char* index, char* buffer) {
  return DeliverFromCatalogue<FollowUpKindRecord>(FollowUpKindRecord::byId, kNoDataPathForFollowUps,
                                                  index, buffer, ComposeFollowUpKind);
}

}  // namespace

std::int32_t WINAPI ZtkodoliInit() { return PassGate("ZtkodoliInit", CountFollowUpKinds); }

std::int32_t WINAPI ZtkodoliNext(const char* index, char* record) {
  return PassGate("ZtkodoliNext", DeliverFollowUpKind, index, record);
}

}  // namespace qlx99
