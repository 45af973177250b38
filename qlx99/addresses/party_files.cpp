#include "addresses/party_files.h"

namespace qlx99 {

bool FindFirstContactPerson(RecordCursor<ContactPersonRecord>& contacts,
                            std::int32_t addressNumber) {
  return contacts.GetEqual(ContactPersonRecord::byAddress, addressNumber) == btrieve::kSuccess;
}

bool FindRelation(RecordCursor<RelationRecord>& relations, std::int32_t relationId) {
  return relations.GetEqual(RelationRecord::byId, relationId) == btrieve::kSuccess;
}

void LookupRelationDesignation(RecordCursor<RelationRecord>& relations, std::int32_t relationId,
                               ResultRecord& dest) {
  if (!FindRelation(relations, relationId)) {
    dest.AddEmptyFields(1);
    return;
  }
  dest.AddField(relations.Current()[RelationRecord::designation]);
}

void LookupAddressLink(const DataRoot& dataRoot, RecordCursor<RelationRecord>& relations,
                       std::int32_t linkNumber, std::int32_t addressNumber, ResultRecord& dest) {
  RecordFile<AddressLinkRecord> links(dataRoot);
  if (links.IsOpen()) {
    for (const auto& link : links.Walk(AddressLinkRecord::byLink, linkNumber)) {
      if (link[AddressLinkRecord::addressNumber] != addressNumber) continue;
      dest.AddField(link[AddressLinkRecord::linkText]);
      LookupRelationDesignation(relations, link[AddressLinkRecord::relationId], dest);
      return;
    }
  }
  dest.AddEmptyFields(2);
}

}  // namespace qlx99
