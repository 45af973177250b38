#include "cases/case_file.h"

#include <algorithm>

#include "frame/arguments.h"
#include "frame/bytes.h"

namespace qlx99 {

CaseNumberKey::CaseNumberKey(const char* caseNumber) {
  CopyBytes(BoundedText(caseNumber, kCaseNumberLength), bytes_.data(), kCaseNumberLength);
  std::fill(bytes_.begin() + kCaseNumberLength, bytes_.end() - 1, ' ');
}

bool FindCase(RecordCursor<CaseRecord>& cases, const CaseNumberKey& key) {
  return cases.GetEqual(CaseRecord::byCaseNumber, key.Bytes()) == btrieve::kSuccess &&
         cases.Current()[CaseRecord::id] != kNoCase;
}

std::int32_t FindCaseId(RecordCursor<CaseRecord>& cases, const CaseNumberKey& key) {
  return FindCase(cases, key) ? cases.Current()[CaseRecord::id] : kNoCase;
}

std::int32_t LookupCaseId(const DataRoot& dataRoot, const CaseNumberKey& key) {
  RecordFile<CaseRecord> cases(dataRoot);
  return cases.IsOpen() ? FindCaseId(cases, key) : kNoCase;
}

}  // namespace qlx99
