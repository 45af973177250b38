// The records of one file of the configured office, for people.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <string_view>

#include "store/record_layout.h"

namespace office {

// The folder that "DataRoot" names; fails when it is not configured.
std::filesystem::path ConfiguredDataRoot();

// The record file of this name, in any case, with or without its extension; fails with the list of
// all when there is none.
const qlx99::RecordLayout& RecordFileNamed(std::string_view name);

// In the order of key 0: a line a record where that fits on a wide terminal, otherwise a block of
// lines in the form of the sample office's texts. Holds one record at a time.
void ShowFile(std::string_view name, std::ostream& out);

}  // namespace office
