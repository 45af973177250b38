// A table for the terminal: columns as wide as their widest cell.
#pragma once

#include <string>
#include <vector>

namespace office {

// All rows have as many cells as there are headings; everything is UTF-8.
std::string TextTable(const std::vector<std::string>& headings,
                      const std::vector<std::vector<std::string>>& rows);

}  // namespace office
