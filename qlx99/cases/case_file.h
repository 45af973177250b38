// The cases of the office ("Akten"). Macros name a case by its case number ("Aktennummer"), every
// other record file by its case ID.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "frame/registry.h"
#include "store/record_file.h"

namespace qlx99 {

struct CaseRecord : RecordDeclaration<CaseRecord> {
  static constexpr RecordFileInfo file{"ZTCASE.KRV", 375};

  static constexpr Int32Field id{"id", 0};
  static constexpr TextField caseNumber{"caseNumber", 4, 10};
  static constexpr Int32Field userId{"userId", 14};
  static constexpr TextField shortCode{"shortCode", 18, 4};
  static constexpr TextField rubrum{"rubrum", 28, 43};  // the case's title
  static constexpr DayField firstDate{"firstDate", 71};
  static constexpr DayField secondDate{"secondDate", 73};
  static constexpr AmountField amount{"amount", 75};
  static constexpr TextField longText{"longText", 83, 150};
  static constexpr TextField text30{"text30", 233, 30};
  static constexpr Int32Field caseTypeId{"caseTypeId", 267};
  static constexpr Int32Field archiveEntryId{"archiveEntryId", 271};
  static constexpr TextField text40{"text40", 275, 40};
  // Of the amount; may end early with a zero byte.
  static constexpr TextField currency{"currency", 315, 3};

  static constexpr UnusedKey byId{0, id, Key::kUnique};
  static constexpr Key byCaseNumber{1, caseNumber, Key::kUnique};

  static constexpr auto fields =
      Fields(id, caseNumber, userId, shortCode, rubrum, firstDate, secondDate, amount, longText,
             text30, caseTypeId, archiveEntryId, text40, currency);
  static constexpr auto keys = Keys(byId, byCaseNumber);
};
static_assert(IsSound<CaseRecord>());

inline constexpr std::int32_t kNoCase = 0;

// What counts of a case number.
inline constexpr std::size_t kCaseNumberLength = 8;

// The key under which the case file holds a case number: its first 8 bytes, zero bytes where it is
// shorter, and two blanks. It is a copy because the host may put the case number of its next call
// where this one's stood, while this one shows a dialog.
class CaseNumberKey {
 public:
  explicit CaseNumberKey(const char* caseNumber);

  std::string_view Bytes() const { return {bytes_.data(), CaseRecord::caseNumber.width}; }

  // The key as text, up to its first zero byte.
  const char* Text() const { return bytes_.data(); }

 private:
  std::array<char, CaseRecord::caseNumber.width + 1> bytes_{};
};

// Makes the case with this number the current record of the open case file. False when there is
// none; a record whose case ID is kNoCase is none, either.
bool FindCase(RecordCursor<CaseRecord>& cases, const CaseNumberKey& key);

// The ID of the case with this number, or kNoCase; no message is shown for a case that is not
// there.
std::int32_t FindCaseId(RecordCursor<CaseRecord>& cases, const CaseNumberKey& key);

// The same with a case file that is opened and closed for it; kNoCase also when that fails.
std::int32_t LookupCaseId(const DataRoot& dataRoot, const CaseNumberKey& key);

}  // namespace qlx99
