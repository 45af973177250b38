// The two small dialogs in which the user picks one of an address's bank connections or contact
// persons.
#pragma once

#include <cstdint>

#include "addresses/bank_connection_file.h"
#include "addresses/contact_person_file.h"
#include "store/record_file.h"

namespace qlx99 {

// Each shows the address's records in a modal dialog and returns the chosen one's own number, or 0
// when the user chose none. The records are read through a copy of `file`, whose position does not
// change.
std::int32_t ChooseBankConnection(const RecordCursor<BankConnectionRecord>& file,
                                  std::int32_t addressNumber);
std::int32_t ChooseContactPerson(const RecordCursor<ContactPersonRecord>& file,
                                 std::int32_t addressNumber);

}  // namespace qlx99
