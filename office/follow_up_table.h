// A case's follow-ups, as a lawyer wants them: what is due first stands first.
#pragma once

#include <string>

namespace office {

// A table; follow-ups without a date stand last, those of one day in the order in which they were
// entered. Fails when the case has none.
std::string FollowUpTable(const std::string& caseNumber);

}  // namespace office
