// The last document number of each case.
#pragma once

#include "store/record_layout.h"

namespace qlx99 {

struct DocumentNumberRecord : RecordDeclaration<DocumentNumberRecord> {
  static constexpr RecordFileInfo file{"ZTHISTO.KRV", 236};

  static constexpr Int32Field id{"id", 0};  // assigned by the record manager
  static constexpr Int32Field caseId{"caseId", 4};
  static constexpr Int32Field lastNumber{"lastNumber", 8};

  static constexpr UnusedKey byId{0, id, Key::kAutoincrement};
  static constexpr Key byCase{1, caseId, Key::kUnique};

  static constexpr auto fields = Fields(id, caseId, lastNumber);
  static constexpr auto keys = Keys(byId, byCase);
};
static_assert(IsSound<DocumentNumberRecord>());

}  // namespace qlx99
