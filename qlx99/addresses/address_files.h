// The address book: addresses, their bank connections, and the catalogues of titles, salutations
// and nationalities. The library only reads these files. A number that no record has finds nothing,
// and its field stays empty.
#pragma once

#include <cstdint>

#include "frame/registry.h"
#include "store/record_file.h"
#include "store/result_record.h"

namespace qlx99 {

struct AddressRecord {
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

// An address has none, one or several; they stand in the order in which they were entered.
struct BankConnectionRecord {
  static constexpr RecordFileInfo file{"ZTBANK.KRV", 189};

  static constexpr Int32Field number{"number", 0};
  static constexpr Int32Field addressNumber{"addressNumber", 4};
  static constexpr TextField bankName{"bankName", 8, 40};
  static constexpr TextField bankCode{"bankCode", 48, 20};
  static constexpr TextField accountNumber{"accountNumber", 68, 20};

  static constexpr Key byNumber{0, number, Key::kUnique};
  static constexpr Key byAddress{1, addressNumber, Key::kDuplicates};

  static constexpr auto fields = Fields(number, addressNumber, bankName, bankCode, accountNumber);
  static constexpr auto keys = Keys(byNumber, byAddress);
};
static_assert(IsSound<BankConnectionRecord>());

struct TitleRecord {
  static constexpr RecordFileInfo file{"ZTKOTITL.KRV", 79};

  static constexpr Int32Field number{"number", 0};
  static constexpr TextField title{"title", 4, 25};

  static constexpr Key byNumber{0, number, Key::kUnique};

  static constexpr auto fields = Fields(number, title);
  static constexpr auto keys = Keys(byNumber);
};
static_assert(IsSound<TitleRecord>());

struct SalutationRecord {
  static constexpr RecordFileInfo file{"ZTKOADBY.KRV", 353};

  static constexpr Int32Field number{"number", 0};
  static constexpr TextField salutation{"salutation", 4, 25};               // "Herrn"
  static constexpr TextField letterSalutation{"letterSalutation", 29, 35};  // "Sehr geehrter Herr"

  static constexpr Key byNumber{0, number, Key::kUnique};

  static constexpr auto fields = Fields(number, salutation, letterSalutation);
  static constexpr auto keys = Keys(byNumber);
};
static_assert(IsSound<SalutationRecord>());

struct NationalityRecord {
  static constexpr RecordFileInfo file{"ZTKONAT.KRV", 93};

  static constexpr Int32Field number{"number", 0};
  static constexpr TextField nationality{"nationality", 4, 35};

  static constexpr Key byNumber{0, number, Key::kUnique};

  static constexpr auto fields = Fields(number, nationality);
  static constexpr auto keys = Keys(byNumber);
};
static_assert(IsSound<NationalityRecord>());

// Each lookup adds one field to the record, an empty one when nothing is found.
void LookupTitle(RecordCursor<TitleRecord>& titles, std::int32_t titleNumber, ResultRecord& dest);
void LookupSalutation(RecordCursor<SalutationRecord>& salutations, std::int32_t salutationNumber,
                      ResultRecord& dest);
void LookupLetterSalutation(RecordCursor<SalutationRecord>& salutations,
                            std::int32_t salutationNumber, ResultRecord& dest);

// The letter salutation that goes with the address, for contact persons without one of their own.
void LookupAddressLetterSalutation(RecordCursor<AddressRecord>& addresses,
                                   RecordCursor<SalutationRecord>& salutations,
                                   std::int32_t addressNumber, ResultRecord& dest);

// Opens and closes its file itself.
void LookupNationality(const DataRoot& dataRoot, std::int32_t nationalityNumber,
                       ResultRecord& dest);

// Makes the address with this number the current one; false when there is none.
bool FindAddress(RecordCursor<AddressRecord>& addresses, std::int32_t addressNumber);

// Adds street and house number as one field. The blank between them is there even if both are
// empty.
void AddStreet(const Record<AddressRecord>& address, ResultRecord& dest);

}  // namespace qlx99
