// Follow-ups ("Wiedervorlagen"): dated reminders attached to a case. They are the office's
// deadlines. The follow-ups of a case have positions, counted from 1 in the order in which they
// were entered.
#pragma once

#include "store/record_file.h"

namespace qlx99 {

struct FollowUpRecord : RecordDeclaration<FollowUpRecord> {
  static constexpr RecordFileInfo file{"ZTDOLIST.KRV", 214};

  static constexpr Int32Field id{"id", 0};  // assigned by the record manager
  static constexpr Int32Field caseId{"caseId", 4};
  static constexpr DayField date{"date", 8};
  static constexpr Int32Field kindId{"kindId", 10};
  static constexpr TextField text{"text", 14, 150};
  static constexpr Int32Field userId{"userId", 164};
  static constexpr Int32Field secondUserId{"secondUserId", 168};    // 0 = none
  static constexpr Int32Field partyRecordId{"partyRecordId", 172};  // 0 = none
  static constexpr TextField flag{"flag", 176, 1};                  // see kWrittenFlag

  static constexpr Key byId{0, id, Key::kAutoincrement};
  static constexpr Key byCase{1, caseId, Key::kDuplicates};

  static constexpr auto fields =
      Fields(id, caseId, date, kindId, text, userId, secondUserId, partyRecordId, flag);
  static constexpr auto keys = Keys(byId, byCase);
};
static_assert(IsSound<FollowUpRecord>());

// What every write of this library leaves in the flag.
inline constexpr const char* kWrittenFlag = "1";

}  // namespace qlx99
