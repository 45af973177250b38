#include "addresses/address_files.h"

namespace qlx99 {
namespace {

// Adds a field of the record that a unique key finds, or an empty field.
template <class Layout>
void AddFieldOf(RecordCursor<Layout>& file, const Key& key, std::int32_t number,
                const TextField& field, ResultRecord& dest) {
  if (file.GetEqual(key, number) == btrieve::kSuccess) {
    dest.AddField(file.Current()[field]);
  } else {
    dest.AddEmptyFields(1);
  }
}

}  // namespace

void LookupTitle(RecordCursor<TitleRecord>& titles, std::int32_t titleNumber, ResultRecord& dest) {
  AddFieldOf(titles, TitleRecord::byNumber, titleNumber, TitleRecord::title, dest);
}

void LookupSalutation(RecordCursor<SalutationRecord>& salutations, std::int32_t salutationNumber,
                      ResultRecord& dest) {
  AddFieldOf(salutations, SalutationRecord::byNumber, salutationNumber,
             SalutationRecord::salutation, dest);
}

void LookupLetterSalutation(RecordCursor<SalutationRecord>& salutations,
                            std::int32_t salutationNumber, ResultRecord& dest) {
  AddFieldOf(salutations, SalutationRecord::byNumber, salutationNumber,
             SalutationRecord::letterSalutation, dest);
}

void LookupAddressLetterSalutation(RecordCursor<AddressRecord>& addresses,
                                   RecordCursor<SalutationRecord>& salutations,
                                   std::int32_t addressNumber, ResultRecord& dest) {
  if (!FindAddress(addresses, addressNumber)) {
    dest.AddEmptyFields(1);
    return;
  }
  LookupLetterSalutation(salutations, addresses.Current()[AddressRecord::salutationNumber], dest);
}

void LookupNationality(const DataRoot& dataRoot, std::int32_t nationalityNumber,
                       ResultRecord& dest) {
  RecordFile<NationalityRecord> nationalities(dataRoot);
  if (!nationalities.IsOpen()) {
    dest.AddEmptyFields(1);
    return;
  }
  AddFieldOf(nationalities, NationalityRecord::byNumber, nationalityNumber,
             NationalityRecord::nationality, dest);
}

bool FindAddress(RecordCursor<AddressRecord>& addresses, std::int32_t addressNumber) {
  return addresses.GetEqual(AddressRecord::byNumber, addressNumber) == btrieve::kSuccess;
}

void AddStreet(const Record<AddressRecord>& address, ResultRecord& dest) {
  dest.Append(TrimBlanks(address[AddressRecord::street]));
  dest.Append(" ");
  dest.AddVerbatim(TrimBlanks(address[AddressRecord::houseNumber]));
}

}  // namespace qlx99
