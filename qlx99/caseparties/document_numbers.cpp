// GetDokuNr: hands out the next document number of a case, counted from 1 and stored. Several
// workstations may ask at the same moment, and no number may go into two letters.
#include "caseparties/document_number_file.h"
#include "cases/case_file.h"
#include "frame/call_gate.h"
#include "frame/exports.h"
#include "store/record_file.h"

namespace qlx99 {
namespace {

// How often a number is taken anew because another workstation was first. Each time another one has
// got its number, so this many in a row do not happen in an office.
constexpr int kMaxTries = 1000;

struct IssuedNumber {
  std::int32_t number;
  bool takenByAnother;  // the counter was written between our reading and our writing it
};

// The number behind the counter that was read last.
IssuedNumber IssueNext(RecordFile<DocumentNumberRecord>& numbers) {
  auto record = numbers.Current();
  // Counted unsigned: a rubbish counter at its limit wraps instead of stopping the word processor.
  const auto next = static_cast<std::int32_t>(
      static_cast<std::uint32_t>(record[DocumentNumberRecord::lastNumber]) + 1U);
  record.Set(DocumentNumberRecord::lastNumber, next);
  return {next, numbers.Update(DocumentNumberRecord::byCase, record) == btrieve::kConflict};
}

IssuedNumber IssueFirst(RecordFile<DocumentNumberRecord>& numbers, std::int32_t caseId) {
  Record<DocumentNumberRecord> record;
  record.Set(DocumentNumberRecord::caseId, caseId);
  record.Set(DocumentNumberRecord::lastNumber, 1);
  return {1, numbers.Insert(DocumentNumberRecord::byCase, record) == btrieve::kDuplicateKey};
}

// A number that cannot be stored is issued all the same. It is taken anew only when another
// workstation has taken it and the counter, read again, is there to confirm that.
std::int32_t Issue(RecordFile<DocumentNumberRecord>& numbers, std::int32_t caseId) {
  const Status found = numbers.GetEqual(DocumentNumberRecord::byCase, caseId);
  const bool none = found == btrieve::kKeyNotFound || found == btrieve::kEndOfFile;
  if (found != btrieve::kSuccess && !none) return 0;

  IssuedNumber issued = none ? IssueFirst(numbers, caseId) : IssueNext(numbers);
  for (int tries = 1; issued.takenByAnother && tries < kMaxTries; ++tries) {
    if (numbers.GetEqual(DocumentNumberRecord::byCase, caseId) != btrieve::kSuccess) break;
    issued = IssueNext(numbers);
  }
  return issued.number;
}

std::int32_t NextDocumentNumber(const char* caseNumber) {
  const CaseNumberKey key(caseNumber);
  if (!EnsureRecordManager()) return 0;
  const auto dataRoot = ReadDataRoot(kNoDataPathForDocuments);
  if (!dataRoot) return 0;
  RecordFile<DocumentNumberRecord> numbers(*dataRoot);
  if (!numbers.IsOpen()) return 1;

  // An unknown case is no reason to stop a letter: such letters share the counter of kNoCase.
  return Issue(numbers, LookupCaseId(*dataRoot, key));
}

}  // namespace

std::int32_t WINAPI GetDokuNr(const char* caseNumber) {
  return PassGate("GetDokuNr", NextDocumentNumber, caseNumber);
}

}  // namespace qlx99
