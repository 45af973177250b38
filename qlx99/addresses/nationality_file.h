// The catalogue of nationalities. The library only reads it.
#pragma once

#include "store/record_layout.h"

namespace qlx99 {

struct NationalityRecord : RecordDeclaration<NationalityRecord> {
  static constexpr RecordFileInfo file{"ZTKONAT.KRV", 93};

  static constexpr Int32Field number{"number", 0};
  static constexpr TextField nationality{"nationality", 4, 35};

  static constexpr Key byNumber{0, number, Key::kUnique};

  static constexpr auto fields = Fields(number, nationality);
  static constexpr auto keys = Keys(byNumber);
};
static_assert(IsSound<NationalityRecord>());

}  // namespace qlx99
