// What an export delivers, for scripts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace office {

struct JsonAnswer {
  // One line, without its end: the result as a number, "record" as a text or null, and "fields"
  // with a text for each name, or null when the names do not belong to them (DeliveredRecord).
  std::string text;
  // Whether there are fields and one of them has a text (an unknown address has 25 empty ones),
  // which tells more than the result of an export with a record; of any other export, whether its
  // result is not 0.
  bool delivered;
};

// Calls the export; fails as CallExport does.
JsonAnswer CallForJson(std::string_view name, const std::vector<std::string>& arguments);

}  // namespace office
