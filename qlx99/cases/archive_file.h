// The archive in which closed cases lie. The library only reads its entries.
#pragma once

#include <cstdint>

#include "frame/registry.h"
#include "store/record_layout.h"
#include "store/result_line.h"

namespace qlx99 {

struct ArchiveRecord : RecordDeclaration<ArchiveRecord> {
  static constexpr RecordFileInfo file{"ZTABLAG.KRV", 126};

  static constexpr Int32Field id{"id", 0};
  static constexpr TextField mark{"mark", 8, 5, FieldKind::kOemText};
  static constexpr DayField date{"date", 70};

  static constexpr Key byId{0, id, Key::kUnique};

  static constexpr auto fields = Fields(id, mark, date);
  static constexpr auto keys = Keys(byId);
};
static_assert(IsSound<ArchiveRecord>());

// Adds two fields, the archive date and the archive mark; both are empty when there is no such
// entry or the file cannot be opened.
void LookupArchiveEntry(const DataRoot& dataRoot, std::int32_t archiveEntryId, ResultLine& dest);

}  // namespace qlx99
