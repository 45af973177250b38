// Who takes part in a case: the case-party file ties a case to addresses, each in a relation
// (client, opponent, court ...). The parties of a case have positions, counted from 1 in the order
// in which they were entered; the record manager keeps that order. The library only reads this
// file.
#pragma once

#include <cstdint>

#include "cases/case_file.h"
#include "frame/registry.h"
#include "store/record_file.h"

namespace qlx99 {

struct CasePartyRecord : RecordDeclaration<CasePartyRecord> {
  static constexpr RecordFileInfo file{"ZTHEAD.KRV", 750};

  static constexpr Int32Field id{"id", 0};
  static constexpr Int32Field caseId{"caseId", 4};
  static constexpr Int32Field addressNumber{"addressNumber", 8};
  static constexpr Int32Field relationId{"relationId", 12};
  static constexpr Int32Field addressLinkNumber{"addressLinkNumber", 16};  // 0 = none
  static constexpr TextField contactAddition{"contactAddition", 120, 30};
  static constexpr TextField addressAddition{"addressAddition", 650, 25};

  static constexpr UnusedKey byId{0, id, Key::kUnique};
  static constexpr Key byCase{1, caseId, Key::kDuplicates};

  static constexpr auto fields = Fields(id, caseId, addressNumber, relationId, addressLinkNumber,
                                        contactAddition, addressAddition);
  static constexpr auto keys = Keys(byId, byCase);
};
static_assert(IsSound<CasePartyRecord>());

// The position of a party record among the parties of its case; 0 when it is none of them, or when
// the file cannot be opened, of which the user has been told.
std::int32_t PartyPosition(std::int32_t partyRecordId, std::int32_t caseId);

// The number of parties of a case; 0 when there is no such case, or when a file cannot be opened,
// of which the user has been told.
std::int32_t CountCaseParties(const CaseNumberKey& key);

}  // namespace qlx99
