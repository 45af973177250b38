// BLesenDLL: who the client (the opponent, the court ...) of a case is. One party in the role is
// delivered as it is; of several, the user picks one.
#include "cases/case_file.h"
#include "frame/arguments.h"
#include "frame/bytes.h"
#include "frame/call_gate.h"
#include "frame/exports.h"
#include "parties/party_reference.h"
#include "parties/party_selection.h"
#include "parties/role.h"

namespace qlx99 {
namespace {

constexpr std::size_t kRoleLength = 2;
constexpr std::string_view kNothingSelected = "| | |";

// The parties of a case in a role: how many, and the reference of the last.
struct PartiesInRole {
  std::int32_t count = 0;
  PartyReference last;
};

// As MatchRelation, with the relation file opened and closed for this one party. A party whose
// relation cannot be looked up counts, too.
RelationMatch RoleMatches(const Role& role, std::int32_t relationId) {
  const auto dataRoot = ReadDataRoot(kNoDataPathForDocuments);
  if (!dataRoot) return {};
  RecordFile<RelationRecord> relations(*dataRoot);
  if (!relations.IsOpen()) return {};
  return MatchRelation(relations, role, relationId);
}

PartiesInRole CollectPartiesByRole(const Role& role, const CaseNumberKey& key) {
  PartiesInRole found;
  const auto dataRoot = ReadDataRoot(kNoDataPathForDocuments);
  if (!dataRoot) return found;
  RecordFile<CasePartyRecord> parties(*dataRoot);
  if (!parties.IsOpen()) return found;

  const std::int32_t caseId = LookupCaseId(*dataRoot, key);
  for (const auto& party : parties.Walk(CasePartyRecord::byCase, caseId)) {
    const auto match = RoleMatches(role, party[CasePartyRecord::relationId]);
    if (!match.matches) continue;
    ++found.count;
    found.last = ReferenceOf(party, match.code.Bytes());
  }
  return found;
}

// Copies the text and its terminator.
void CopyText(std::string_view text, char* result) {
  CopyBytes(text, result, text.size());
  result[text.size()] = '\0';
}

std::int32_t DeliverParty(const char* roleCode, const char* caseNumber, const char* /*spare*/,
                          const char* noDialog, char* result) {
  if (!EnsureRecordManager() || result == nullptr) return 0;
  // One character more than a code has, so that a longer text is not taken for one.
  const Role& role = RoleOf(BoundedText(roleCode, kRoleLength + 1));
  const CaseNumberKey key(caseNumber);
  const bool noSelection = BoundedText(noDialog, 2) == "1";
  const PartiesInRole found = CollectPartiesByRole(role, key);
  if (found.count == 0) return 0;
  if (found.count == 1) {
    CopyText(found.last.Text(), result);
    return -1;
  }
  if (noSelection) return 0;

  const PartyReference chosen = ShowPartySelection(key, role);
  const bool taken = !chosen.Text().empty();
  CopyText(taken ? chosen.Text() : kNothingSelected, result);
  return taken ? -1 : 0;
}

}  // namespace

std::int32_t WINAPI BLesenDLL(const char* role, const char* caseNumber, const char* spare,
                              const char* noDialog, char* result) {
  return PassGate("BLesenDLL", DeliverParty, role, caseNumber, spare, noDialog, result);
}

}  // namespace qlx99
