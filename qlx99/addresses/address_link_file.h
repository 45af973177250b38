// Address links, which attach further addresses to a party of a case. The library only reads them.
#pragma once

#include "store/record_layout.h"

namespace qlx99 {

struct AddressLinkRecord : RecordDeclaration<AddressLinkRecord> {
  static constexpr RecordFileInfo file{"ZTADTOAD.KRV", 836};

  static constexpr Int32Field id{"id", 0};
  static constexpr Int32Field linkNumber{"linkNumber", 4};  // shared by all records of one link
  static constexpr Int32Field addressNumber{"addressNumber", 8};
  static constexpr Int32Field relationId{"relationId", 12};
  static constexpr TextField linkText{"linkText", 16, 30};

  static constexpr UnusedKey byId{0, id, Key::kUnique};
  static constexpr Key byLink{1, linkNumber, Key::kDuplicates};

  static constexpr auto fields = Fields(id, linkNumber, addressNumber, relationId, linkText);
  static constexpr auto keys = Keys(byId, byLink);
};
static_assert(IsSound<AddressLinkRecord>());

}  // namespace qlx99
