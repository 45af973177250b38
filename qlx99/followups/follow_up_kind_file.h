// The office's catalogue of follow-up kinds; every follow-up names one of them. The library only
// reads it.
#pragma once

#include "store/record_layout.h"

namespace qlx99 {

struct FollowUpKindRecord : RecordDeclaration<FollowUpKindRecord> {
  static constexpr RecordFileInfo file{"ZTKODOLI.KRV", 88};

  static constexpr Int32Field id{"id", 0};
  static constexpr TextField name{"name", 4, 30};
  static constexpr Int32Field number{"number", 34};  // passed on as it is

  static constexpr Key byId{0, id, Key::kUnique};

  static constexpr auto fields = Fields(id, name, number);
  static constexpr auto keys = Keys(byId);
};
static_assert(IsSound<FollowUpKindRecord>());

}  // namespace qlx99
