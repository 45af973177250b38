// A small record file for trials and fuzzers of the record manager by itself.
#pragma once

#include <cstdint>

#include "store/record_layout.h"

namespace testkit {

struct Party {
  std::int32_t number = 0;  // given by the record manager
  std::int32_t caseId = 0;
  std::int32_t text = 0;
};

// The same for the record manager.
struct PartyRecord : qlx99::RecordDeclaration<PartyRecord> {
  static constexpr qlx99::RecordFileInfo file{"PARTY.KRV", sizeof(Party)};
  static constexpr Int32Field number{"number", 0};
  static constexpr Int32Field caseId{"caseId", 4};
  static constexpr Key byNumber{0, number, Key::kAutoincrement};
  static constexpr Key byCase{1, caseId, Key::kDuplicates};
  static constexpr auto fields = qlx99::Fields(number, caseId);
  static constexpr auto keys = qlx99::Keys(byNumber, byCase);
};

}  // namespace testkit
