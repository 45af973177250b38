// The two catalogues that a case record draws on: case types, and the entries of the archive in
// which closed cases lie. The library only reads them.
#pragma once

#include <cstdint>

#include "frame/registry.h"
#include "store/record_layout.h"
#include "store/result_record.h"

namespace qlx99 {

struct CaseTypeRecord {
  static constexpr RecordFileInfo file{"ZTTCASE.KRV", 84};

  static constexpr Int32Field id{"id", 0};
  static constexpr TextField text{"text", 4, 30};

  static constexpr Key byId{0, id, Key::kUnique};

  static constexpr auto fields = Fields(id, text);
  static constexpr auto keys = Keys(byId);
};
static_assert(IsSound<CaseTypeRecord>());

struct ArchiveRecord {
  static constexpr RecordFileInfo file{"ZTABLAG.KRV", 126};

  static constexpr Int32Field id{"id", 0};
  static constexpr TextField mark{"mark", 8, 5, FieldKind::kOemText};
  static constexpr DayField date{"date", 70};

  static constexpr Key byId{0, id, Key::kUnique};

  static constexpr auto fields = Fields(id, mark, date);
  static constexpr auto keys = Keys(byId);
};
static_assert(IsSound<ArchiveRecord>());

// Adds the case type's text as a field.
void LookupCaseType(const DataRoot& dataRoot, std::int32_t caseTypeId, ResultRecord& dest);

// Adds two fields, the archive date and the archive mark.
void LookupArchiveEntry(const DataRoot& dataRoot, std::int32_t archiveEntryId, ResultRecord& dest);

// In both, the fields are empty when there is no such entry or the file cannot be opened.

}  // namespace qlx99
