// Contact persons: who is reached at an address. It has none, one or several; they stand in the
// order in which they were entered. The library only reads them.
#pragma once

#include "store/record_layout.h"

namespace qlx99 {

struct ContactPersonRecord : RecordDeclaration<ContactPersonRecord> {
  static constexpr RecordFileInfo file{"ZTPART.KRV", 1487};

  static constexpr Int32Field number{"number", 0};
  static constexpr TextField name{"name", 4, 115};
  static constexpr Int32Field addressNumber{"addressNumber", 123};
  static constexpr Int32Field titleNumber{"titleNumber", 127};
  static constexpr TextField firstName{"firstName", 133, 35};
  static constexpr TextField nameAddition{"nameAddition", 198, 360};
  static constexpr TextField freeText{"freeText", 558, 300};
  static constexpr TextField shortField1{"shortField1", 858, 25};
  static constexpr TextField shortField2{"shortField2", 883, 25};
  static constexpr TextField shortField3{"shortField3", 908, 25};
  static constexpr TextField shortField4{"shortField4", 933, 25};
  static constexpr TextField shortField5{"shortField5", 958, 25};
  static constexpr TextField wideField{"wideField", 983, 75};
  static constexpr Int32Field salutationNumber{"salutationNumber", 1258};  // 0 = the address's

  static constexpr UnusedKey byNumber{0, number, Key::kUnique};
  // Shorter than the name may be.
  static constexpr UnusedKey byName{1, TextField{"name", 4, 30}, Key::kDuplicates};
  static constexpr Key byAddress{2, addressNumber, Key::kDuplicates};

  static constexpr auto fields = Fields(
      number, name, addressNumber, titleNumber, firstName, nameAddition, freeText, shortField1,
      shortField2, shortField3, shortField4, shortField5, wideField, salutationNumber);
  static constexpr auto keys = Keys(byNumber, byName, byAddress);
};
static_assert(IsSound<ContactPersonRecord>());

}  // namespace qlx99
