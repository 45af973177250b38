// Bank connections. An address has none, one or several; they stand in the order in which they were
// entered. The library only reads them.
#pragma once

#include "store/record_layout.h"

namespace qlx99 {

struct BankConnectionRecord : RecordDeclaration<BankConnectionRecord> {
  static constexpr RecordFileInfo file{"ZTBANK.KRV", 189};

  static constexpr Int32Field number{"number", 0};
  static constexpr Int32Field addressNumber{"addressNumber", 4};
  static constexpr TextField bankName{"bankName", 8, 40};
  static constexpr TextField bankCode{"bankCode", 48, 20};
  static constexpr TextField accountNumber{"accountNumber", 68, 20};

  static constexpr UnusedKey byNumber{0, number, Key::kUnique};
  static constexpr Key byAddress{1, addressNumber, Key::kDuplicates};

  static constexpr auto fields = Fields(number, addressNumber, bankName, bankCode, accountNumber);
  static constexpr auto keys = Keys(byNumber, byAddress);
};
static_assert(IsSound<BankConnectionRecord>());

}  // namespace qlx99
