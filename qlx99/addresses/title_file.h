// The catalogue of titles. The library only reads it.
#pragma once

#include "store/record_layout.h"

namespace qlx99 {

struct TitleRecord : RecordDeclaration<TitleRecord> {
  static constexpr RecordFileInfo file{"ZTKOTITL.KRV", 79};

  static constexpr Int32Field number{"number", 0};
  static constexpr TextField title{"title", 4, 25};  // "Dr."

  static constexpr Key byNumber{0, number, Key::kUnique};

  static constexpr auto fields = Fields(number, title);
  static constexpr auto keys = Keys(byNumber);
};
static_assert(IsSound<TitleRecord>());

}  // namespace qlx99
