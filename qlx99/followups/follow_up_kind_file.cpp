#include "followups/follow_up_kind_file.h"

#include "store/record_file.h"

namespace qlx99 {

void LookupFollowUpKind(const DataRoot& dataRoot, std::int32_t kindId, ResultRecord& dest) {
  RecordFile<FollowUpKindRecord> kinds(dataRoot);
  if (!kinds.IsOpen() || kinds.GetEqual(FollowUpKindRecord::byId, kindId) != btrieve::kSuccess) {
    dest.AddEmptyFields(1);
    return;
  }
  dest.AddField(kinds.Current()[FollowUpKindRecord::name]);
}

}  // namespace qlx99
