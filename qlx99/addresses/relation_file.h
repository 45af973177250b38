// The catalogue of relations in which a party can stand to a case: client, opponent, court ... The
// library only reads it.
#pragma once

#include "store/record_layout.h"

namespace qlx99 {

struct RelationRecord : RecordDeclaration<RelationRecord> {
  static constexpr RecordFileInfo file{"ZTKOFPAR.KRV", 83};

  static constexpr Int32Field id{"id", 0};
  static constexpr TextField designation{"designation", 4, 35};
  static constexpr TextField code{"code", 39, 2};  // "2 ", "13"; the blank is part of it

  static constexpr Key byId{0, id, Key::kUnique};

  static constexpr auto fields = Fields(id, designation, code);
  static constexpr auto keys = Keys(byId);
};
static_assert(IsSound<RelationRecord>());

}  // namespace qlx99
