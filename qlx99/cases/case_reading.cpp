// SLesenDLL: everything that a letter says of a case itself, as one line of 15 fields.
#include <cstdint>

#include "caseparties/case_party_file.h"
#include "cases/amount.h"
#include "cases/archive_file.h"
#include "cases/case_file.h"
#include "cases/case_type_file.h"
#include "frame/arguments.h"
#include "frame/bytes.h"
#include "frame/call_gate.h"
#include "frame/exports.h"
#include "store/record_fields.h"
#include "users/user_file.h"

namespace qlx99 {
namespace {

// The case's currency as stored. It comes from the case record, but the export itself adds it,
// behind the party count.
using Currency = std::array<char, CaseRecord::currency.width>;

void AddCaseType(const DataRoot& dataRoot, std::int32_t caseTypeId, ResultLine& dest) {
  RecordFile<CaseTypeRecord> caseTypes(dataRoot);
  RecordFields(caseTypes.Find(CaseTypeRecord::byId, caseTypeId), dest).Add(CaseTypeRecord::text);
}

// Fields 1 to 13.
void ComposeCase(const DataRoot& dataRoot, const Record<CaseRecord>& caseRecord, ResultLine& dest) {
  using C = CaseRecord;
  dest.AddField(caseRecord[C::rubrum]);
  dest.AddField(caseRecord[C::text40]);
  dest.AddField(caseRecord[C::text30]);
  dest.AddField(caseRecord[C::shortCode]);
  AddCaseType(dataRoot, caseRecord[C::caseTypeId], dest);
  FormatAmount(caseRecord[C::amount], dest);
  dest.AddDay(caseRecord[C::firstDate]);
  dest.AddDay(caseRecord[C::secondDate]);
  dest.AddField(caseRecord[C::longText]);
  LookupUser(dataRoot, caseRecord[C::userId], dest);
  LookupArchiveEntry(dataRoot, caseRecord[C::archiveEntryId], dest);
}

// Composes fields 1 to 13 of a case that is found, and takes its currency. False when the case file
// cannot be opened.
bool ReadCase(const DataRoot& dataRoot, const CaseNumberKey& key, Currency& currency,
              ResultLine& dest) {
  RecordFile<CaseRecord> cases(dataRoot);
  if (!cases.IsOpen()) return false;
  if (FindCase(cases, key)) {
    const auto& found = cases.Current();
    CopyBytes(found[CaseRecord::currency], currency.data(), currency.size());
    ComposeCase(dataRoot, found, dest);
  }
  return true;
}

// Composes fields 1 to 14; the last alone for an unknown case, nothing when the case file cannot be
// opened. `currency` stays as it is unless a case is found.
void ComposeAllButCurrency(const CaseNumberKey& key, Currency& currency, ResultLine& dest) {
  if (!EnsureRecordManager()) return;
  const auto dataRoot = ReadDataRoot(kNoDataPathForCases);
  if (!dataRoot) return;
  if (!ReadCase(*dataRoot, key, currency, dest)) return;
  dest.AddNumber(CountCaseParties(key));
}

std::int32_t DeliverCase(const char* caseNumber, char* buffer) {
  ResultLine line;
  Currency currency{};
  ComposeAllButCurrency(CaseNumberKey(caseNumber), currency, line);
  line.DropLastEnd();
  line.EndAtFirstZero();
  line.Append("|");
  line.Append(TrimBlanks(BoundedText(currency.data(), currency.size())));
  return HandOver(line, buffer, HandOverForm::kWithEndMark);
}

}  // namespace

std::int32_t WINAPI SLesenDLL(const char* caseNumber, char* record) {
  return PassGate("SLesenDLL", DeliverCase, caseNumber, record);
}

}  // namespace qlx99
