// The catalogue of case types. The library only reads it.
#pragma once

#include "store/record_layout.h"

namespace qlx99 {

struct CaseTypeRecord : RecordDeclaration<CaseTypeRecord> {
  static constexpr RecordFileInfo file{"ZTTCASE.KRV", 84};

  static constexpr Int32Field id{"id", 0};
  static constexpr TextField text{"text", 4, 30};

  static constexpr Key byId{0, id, Key::kUnique};

  static constexpr auto fields = Fields(id, text);
  static constexpr auto keys = Keys(byId);
};
static_assert(IsSound<CaseTypeRecord>());

}  // namespace qlx99
