// Addresses. The library only reads them.
#pragma once

#include "store/record.h"
#include "store/result_line.h"

namespace qlx99 {

struct AddressRecord : RecordDeclaration<AddressRecord> {
  static constexpr RecordFileInfo file{"ZTADRESS.KRV", 297};

  static constexpr Int32Field number{"number", 0};
  static constexpr Int32Field nationalityNumber{"nationalityNumber", 4};
  static constexpr Int32Field salutationNumber{"salutationNumber", 8};
  static constexpr TextField street{"street", 32, 50};
  static constexpr TextField houseNumber{"houseNumber", 82, 15};
  static constexpr TextField postalCode{"postalCode", 97, 5};
  static constexpr TextField place{"place", 102, 50};
  static constexpr TextField secondPostalCode{"secondPostalCode", 152, 5};
  static constexpr TextField secondPlace{"secondPlace", 157, 50};

  static constexpr Key byNumber{0, number, Key::kUnique};

  static constexpr auto fields =
      Fields(number, nationalityNumber, salutationNumber, street, houseNumber, postalCode, place,
             secondPostalCode, secondPlace);
  static constexpr auto keys = Keys(byNumber);
};
static_assert(IsSound<AddressRecord>());

// Adds street and house number as one field. The blank between them is there even if both are
// empty.
void AddStreet(const Record<AddressRecord>& address, ResultLine& dest);

}  // namespace qlx99
