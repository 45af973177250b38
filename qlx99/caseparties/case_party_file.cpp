#include "caseparties/case_party_file.h"

#include "addresses/relation_file.h"
#include "cases/case_file.h"

namespace qlx99 {

std::int32_t PartyPosition(std::int32_t partyRecordId, std::int32_t caseId) {
  const auto dataRoot = ReadDataRoot(kNoDataPathForAddresses);
  if (!dataRoot) return 0;
  RecordFile<CasePartyRecord> parties(*dataRoot);
  if (!parties.IsOpen()) return 0;

  std::int32_t position = 0;
  for (const auto& party : parties.Walk(CasePartyRecord::byCase, caseId)) {
    ++position;
    if (party[CasePartyRecord::id] == partyRecordId) return position;
  }
  return 0;
}

std::int32_t CountCaseParties(const CaseNumberKey& key) {
  const auto dataRoot = ReadDataRoot(kNoDataPathForAddresses);
  if (!dataRoot) return 0;
  RecordFile<CaseRecord> cases(*dataRoot);
  RecordFile<CasePartyRecord> parties(*dataRoot, cases);
  // Not read here. It is opened so that the user learns when it is missing.
  RecordFile<RelationRecord> relations(*dataRoot, parties);
  if (!relations.IsOpen()) return 0;

  const std::int32_t caseId = FindCaseId(cases, key);
  if (caseId == kNoCase) return 0;
  return CountRecords(parties.Walk(CasePartyRecord::byCase, caseId));
}

}  // namespace qlx99
