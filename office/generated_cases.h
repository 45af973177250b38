// Cases in bulk, for measuring: plausible in number and size, and the same every time.
#pragma once

#include <cstdint>

#include "office/new_office.h"
#include "office/office_files.h"

namespace office {

// A case has its client and its opponent with addresses of their own, and opposing counsel, court
// and insurer out of a pool that many cases share.
void InsertGeneratedCases(const RecordManager& manager, OfficeFiles& files, std::int32_t cases,
                          const Progress& progress);

}  // namespace office
