// The people and relations around an address: its contact persons, the catalogue of relations in
// which a party stands, and the links that attach further addresses to a party of a case. The
// library only reads these files.
#pragma once

#include <cstdint>

#include "frame/registry.h"
#include "store/record_file.h"
#include "store/result_record.h"

namespace qlx99 {

// An address has none, one or several; they stand in the order in which they were entered.
struct ContactPersonRecord {
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
  static constexpr Int32Field salutationNumber{"salutationNumber",
                                               1258};  // 0 = the address's applies

  static constexpr Key byNumber{0, number, Key::kUnique};
  // Not used here; a key is shorter than the name may be.
  static constexpr Key byName{1, TextField{"name", 4, 30}, Key::kDuplicates};
  static constexpr Key byAddress{2, addressNumber, Key::kDuplicates};

  static constexpr auto fields = Fields(
      number, name, addressNumber, titleNumber, firstName, nameAddition, freeText, shortField1,
      shortField2, shortField3, shortField4, shortField5, wideField, salutationNumber);
  static constexpr auto keys = Keys(byNumber, byName, byAddress);
};
static_assert(IsSound<ContactPersonRecord>());

struct RelationRecord {
  static constexpr RecordFileInfo file{"ZTKOFPAR.KRV", 83};

  static constexpr Int32Field id{"id", 0};
  static constexpr TextField designation{"designation", 4, 35};
  static constexpr TextField code{"code", 39, 2};  // "2 ", "13"; the blank is part of it

  static constexpr Key byId{0, id, Key::kUnique};

  static constexpr auto fields = Fields(id, designation, code);
  static constexpr auto keys = Keys(byId);
};
static_assert(IsSound<RelationRecord>());

struct AddressLinkRecord {
  static constexpr RecordFileInfo file{"ZTADTOAD.KRV", 836};

  static constexpr Int32Field id{"id", 0};
  static constexpr Int32Field linkNumber{"linkNumber", 4};  // shared by all records of one link
  static constexpr Int32Field addressNumber{"addressNumber", 8};
  static constexpr Int32Field relationId{"relationId", 12};
  static constexpr TextField linkText{"linkText", 16, 30};

  static constexpr Key byId{0, id, Key::kUnique};
  static constexpr Key byLink{1, linkNumber, Key::kDuplicates};

  static constexpr auto fields = Fields(id, linkNumber, addressNumber, relationId, linkText);
  static constexpr auto keys = Keys(byId, byLink);
};
static_assert(IsSound<AddressLinkRecord>());

// Makes the first contact person of an address the current one; false when the address has none.
bool FindFirstContactPerson(RecordCursor<ContactPersonRecord>& contacts,
                            std::int32_t addressNumber);

// Makes the relation with this ID the current one; false when there is none.
bool FindRelation(RecordCursor<RelationRecord>& relations, std::int32_t relationId);

// Adds the relation's designation as a field, an empty one when there is no such relation.
void LookupRelationDesignation(RecordCursor<RelationRecord>& relations, std::int32_t relationId,
                               ResultRecord& dest);

// Adds two fields, the link text and the relation designation of the record that ties the address
// to the link; both are empty when there is none or the file, which is opened and closed here,
// cannot be opened.
void LookupAddressLink(const DataRoot& dataRoot, RecordCursor<RelationRecord>& relations,
                       std::int32_t linkNumber, std::int32_t addressNumber, ResultRecord& dest);

}  // namespace qlx99
