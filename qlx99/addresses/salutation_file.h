// The catalogue of salutations. The library only reads it.
#pragma once

#include "store/record_layout.h"

namespace qlx99 {

struct SalutationRecord : RecordDeclaration<SalutationRecord> {
  static constexpr RecordFileInfo file{"ZTKOADBY.KRV", 353};

  static constexpr Int32Field number{"number", 0};
  static constexpr TextField salutation{"salutation", 4, 25};               // "Herrn"
  static constexpr TextField letterSalutation{"letterSalutation", 29, 35};  // "Sehr geehrter Herr"

  static constexpr Key byNumber{0, number, Key::kUnique};

  static constexpr auto fields = Fields(number, salutation, letterSalutation);
  static constexpr auto keys = Keys(byNumber);
};
static_assert(IsSound<SalutationRecord>());

}  // namespace qlx99
