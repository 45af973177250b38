// The office's users: the people named as responsible in cases and follow-ups.
#pragma once

#include <cstdint>

#include "frame/registry.h"
#include "store/record_layout.h"
#include "store/result_line.h"

namespace qlx99 {

struct UserRecord : RecordDeclaration<UserRecord> {
  static constexpr RecordFileInfo file{"ZTUSER.KRV", 924};

  static constexpr Int32Field number{"number", 0};
  static constexpr TextField name{"name", 4, 30};
  // What these two hold is the case-management system's affair; macros are given them as they
  // stand.
  static constexpr TextField secondText{"secondText", 34, 50};
  static constexpr TextField thirdText{"thirdText", 84, 8};
  static constexpr TextField shortSign{"shortSign", 308, 3};

  static constexpr Key byNumber{0, number, Key::kUnique};

  static constexpr auto fields = Fields(number, name, secondText, thirdText, shortSign);
  static constexpr auto keys = Keys(byNumber);
};
static_assert(IsSound<UserRecord>());

// Adds two fields: the user's name and short sign, both empty when there is no such user or the
// file cannot be opened.
void LookupUser(const DataRoot& dataRoot, std::int32_t userNumber, ResultLine& dest);

}  // namespace qlx99
