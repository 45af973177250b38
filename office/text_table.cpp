#include "office/text_table.h"

#include <algorithm>

#include "office/text_encoding.h"

namespace office {
namespace {

using Row = std::vector<std::string>;

std::string Line(const Row& row, const std::vector<std::size_t>& widths) {
  std::string line;
  for (std::size_t i = 0; i < row.size(); ++i) line += PaddedRight(row[i], widths[i]) + "  ";
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

}  // namespace

std::string TextTable(const Row& headings, const std::vector<Row>& rows) {
  std::vector<std::size_t> widths(headings.size());
  const auto widen = [&widths](const Row& row) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], ColumnsOf(row[i]));
  };
  widen(headings);
  std::ranges::for_each(rows, widen);

  std::string table = Line(headings, widths);
  for (const Row& row : rows) table += Line(row, widths);
  return table;
}

}  // namespace office
