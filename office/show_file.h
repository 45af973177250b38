// The records of one file of the configured office, for people and for other programs.
#pragma once

#include <iosfwd>
#include <string_view>

#include "store/record_layout.h"

namespace office {

// The record file of this name, in any case, with or without its extension; fails with the list of
// all when there is none.
const qlx99::RecordLayout& RecordFileNamed(std::string_view name);

enum class Listing {
  kBlocks,  // a line for each field, in the form of the sample office's texts
  kCsv,     // a line for each record, with commas between the fields; their names come first
};

// In the order of key 0. Holds one record at a time.
void ShowFile(std::string_view name, Listing listing, std::ostream& out);

}  // namespace office
