#include "parties/party_reference.h"

namespace qlx99 {

RelationMatch MatchRelation(RecordCursor<RelationRecord>& relations, const Role& role,
                            std::int32_t relationId) {
  RelationMatch match;
  if (const auto* relation = relations.Find(RelationRecord::byId, relationId)) {
    match.code.Append((*relation)[RelationRecord::code]);
    match.matches = RelationCounts(role, match.code.Bytes());
  }
  return match;
}

PartyReference ReferenceOf(const Record<CasePartyRecord>& party, std::string_view relationCode) {
  const std::int32_t linkNumber = party[CasePartyRecord::addressLinkNumber];
  PartyReference reference;
  reference.AppendNumber(party[CasePartyRecord::addressNumber]);
  reference.Append("|");
  reference.Append(relationCode);
  reference.Append("|0|");
  if (linkNumber != 0) reference.AppendNumber(linkNumber);
  return reference;
}

}  // namespace qlx99
