// WVInit and WVNext: how many follow-ups a case has, and the follow-up at a position.
#include "caseparties/case_party_file.h"
#include "cases/case_file.h"
#include "followups/follow_up_file.h"
#include "followups/follow_up_kind_file.h"
#include "frame/arguments.h"
#include "frame/call_gate.h"
#include "frame/exports.h"
#include "store/record_fields.h"
#include "store/record_file.h"
#include "users/user_file.h"

namespace qlx99 {
namespace {

std::int32_t CountFollowUps(const char* caseNumber) {
  const CaseNumberKey key(caseNumber);
  if (!EnsureRecordManager()) return 0;
  const auto dataRoot = ReadDataRoot(kNoDataPathForFollowUps);
  if (!dataRoot) return 0;
  RecordFile<CaseRecord> cases(*dataRoot);
  RecordFile<FollowUpRecord> followUps(*dataRoot, cases);
  if (!followUps.IsOpen()) return 0;

  const std::int32_t caseId = FindCaseId(cases, key);
  if (caseId == kNoCase) return 0;
  return CountRecords(followUps.Walk(FollowUpRecord::byCase, caseId));
}

void AddKindName(const DataRoot& dataRoot, std::int32_t kindId, ResultLine& dest) {
  RecordFile<FollowUpKindRecord> kinds(dataRoot);
  RecordFields(kinds.Find(FollowUpKindRecord::byId, kindId), dest).Add(FollowUpKindRecord::name);
}

void ComposeFollowUp(const DataRoot& dataRoot, const Record<FollowUpRecord>& followUp,
                     ResultLine& dest) {
  using F = FollowUpRecord;
  const std::int32_t partyRecordId = followUp[F::partyRecordId];

  dest.AddDay(followUp[F::date]);
  AddKindName(dataRoot, followUp[F::kindId], dest);
  dest.AddNumber(followUp[F::kindId]);
  dest.AddField(followUp[F::text]);
  LookupUser(dataRoot, followUp[F::userId], dest);
  dest.AddNumber(followUp[F::userId]);
  LookupUser(dataRoot, followUp[F::secondUserId], dest);
  dest.AddNumber(followUp[F::secondUserId]);
  dest.AddNumber(partyRecordId == 0 ? 0 : PartyPosition(partyRecordId, followUp[F::caseId]));
  dest.AppendNumber(followUp[F::id]);
}

// Composes nothing for a position beyond the case's last follow-up.
void ReadFollowUp(const CaseNumberKey& key, std::int32_t position, ResultLine& dest) {
  const auto dataRoot = ReadDataRoot(kNoDataPathForAddresses);
  if (!dataRoot) return;
  RecordFile<CaseRecord> cases(*dataRoot);
  RecordFile<FollowUpRecord> followUps(*dataRoot, cases);
  if (!followUps.IsOpen()) return;

  const std::int32_t caseId = FindCaseId(cases, key);
  if (caseId == kNoCase) return;
  if (!WalkToPosition(followUps.Walk(FollowUpRecord::byCase, caseId), position)) return;
  ComposeFollowUp(*dataRoot, followUps.Current(), dest);
}

std::int32_t DeliverFollowUp(const char* caseNumber, const char* index, char* buffer) {
  if (!EnsureRecordManager()) return 0;
  ResultLine followUp;
  ReadFollowUp(CaseNumberKey(caseNumber), LeadingNumber(index), followUp);
  return HandOver(followUp, buffer, HandOverForm::kLineOnly);
}

}  // namespace

std::int32_t WINAPI WVInit(const char* caseNumber) {
  return PassGate("WVInit", CountFollowUps, caseNumber);
}

std::int32_t WINAPI WVNext(const char* caseNumber, const char* index, char* record) {
  return PassGate("WVNext", DeliverFollowUp, caseNumber, index, record);
}

}  // namespace qlx99
