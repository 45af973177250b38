// Makes the record files of an office and fills them.
#pragma once

#include <cstdint>
#include <filesystem>

#include "office/progress.h"

namespace office {

inline constexpr std::int32_t kMostGeneratedCases = 10'000'000;

// The readable sample office, in a folder that is made if need be, with a folder for documents in
// it. Fails, before anything is written, when one of the record files is there already.
void MakeSampleOffice(const std::filesystem::path& directory);

// An office with the sample's users and catalogues and this many generated cases, numbered from
// 10000001. The same number gives the same office, byte for byte as far as fields go. `progress`
// counts the cases that are written.
void MakeGeneratedOffice(const std::filesystem::path& directory, std::int32_t cases,
                         const Progress& progress);

// Where an office made here keeps its documents.
std::filesystem::path DocumentFolder(const std::filesystem::path& directory);

}  // namespace office
