// GetDokuNr: hands out the next document number of a case, counted from 1 and stored. Several
// workstations may ask at the same moment, and no number may go into two letters.
#include "caseparties/document_number_file.h"
#include "cases/case_file.h"
#include "frame/call_gate.h"
#include "frame/exports.h"
#include "store/record_file.h"

namespace qlx99 {
namespace {

// How often a number is taken anew because another workstation took the same one first. Each time,
// some workstation got its number, so this many in a row do not happen in an office.
constexpr int kMaxTries = 1000;

// A number, and the status of writing it down.
struct IssuedNumber {
  std::int32_t number;
  int writeStatus;
};

IssuedNumber IssueNext(RecordFile<DocumentNumberRecord>& numbers) {
  auto record = numbers.Current();
  // Counted unsigned: a rubbish counter at its limit wraps instead of stopping the word processor.
  const auto next = static_cast<std::int32_t>(
      static_cast<std::uint32_t>(record[DocumentNumberRecord::lastNumber]) + 1U);
  record.Set(DocumentNumberRecord::lastNumber, next);
  return {next, numbers.Update(DocumentNumberRecord::byCase, record)};
}

IssuedNumber IssueFirst(RecordFile<DocumentNumberRecord>& numbers, std::int32_t caseId) {
  Record<DocumentNumberRecord> record;
  record.Set(DocumentNumberRecord::caseId, caseId);
  record.Set(DocumentNumberRecord::lastNumber, 1);
  return {1, numbers.Insert(DocumentNumberRecord::byCase, record)};
}

IssuedNumber Issue(RecordFile<DocumentNumberRecord>& numbers, std::int32_t caseId) {
  const int found = numbers.GetEqual(DocumentNumberRecord::byCase, caseId);
  if (found == btrieve::kSuccess) return IssueNext(numbers);
  if (found == btrieve::kKeyNotFound || found == btrieve::kEndOfFile) {
    return IssueFirst(numbers, caseId);
  }
  return {0, btrieve::kSuccess};
}

// Whether another workstation wrote this case's counter between our reading and our writing it.
bool TakenByAnother(int writeStatus) {
  return writeStatus == btrieve::kConflict || writeStatus == btrieve::kDuplicateKey;
}

// A failure to write for any other reason is not looked at: the letter gets its number.
std::int32_t NextDocumentNumber(const char* caseNumber) {
  if (!EnsureRecordManager()) return 0;
  const auto dataRoot = ReadDataRoot(kNoDataPathForDocuments);
  if (!dataRoot) return 0;
  RecordFile<DocumentNumberRecord> numbers(*dataRoot);
  if (!numbers.IsOpen()) return 1;

  // An unknown case is no reason to stop a letter: such letters share the counter of kNoCase.
  const std::int32_t caseId = LookupCaseId(*dataRoot, caseNumber);
  for (int tries = 0; tries < kMaxTries; ++tries) {
    const IssuedNumber issued = Issue(numbers, caseId);
    if (!TakenByAnother(issued.writeStatus)) return issued.number;
  }
  return 0;
}

}  // namespace

std::int32_t WINAPI GetDokuNr(const char* caseNumber) {
  return PassGate("GetDokuNr", NextDocumentNumber, caseNumber);
}

}  // namespace qlx99
