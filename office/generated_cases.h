// Cases in bulk, for measuring: plausible in number and size, and the same every time.
#pragma once

#include <cstdint>

#include "office/office_files.h"
#include "office/progress.h"

namespace office {

// A case has its client and its opponent with addresses of their own, and opposing counsel, court
// and insurer out of a pool that many cases share. `progress` counts the cases that are written.
void InsertGeneratedCases(const RecordManager& manager, OfficeFiles& files, std::int32_t cases,
                          const Progress& progress);

}  // namespace office
