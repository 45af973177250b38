// A record file's layout in the record manager's words.
#pragma once

#include <string>

#include "store/record_layout.h"

namespace office {

// What the record manager's Create takes for such a file: its record length and its keys.
std::string DescribeFile(const qlx99::RecordLayout& layout);

}  // namespace office
