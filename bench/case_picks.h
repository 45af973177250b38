// Cases to write letters in. They are such that nobody has to choose: one client, who has one
// contact person and at most one bank connection.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace bench {

struct CasePick {
  std::string caseNumber;
  std::string addressNumber;  // of the client
  std::string followUpId;     // of a follow-up of the case
  std::string newFollowUpId;  // the number that the next new follow-up of the office is given
};

// `count` cases spread over the whole office, fewer where it has no more. `office` is in use.
std::vector<CasePick> PickCases(const std::filesystem::path& office, std::size_t count);

// The reading exports of a letter: who the client is, its address, the case.
void ReadLetter(const CasePick& pick);

}  // namespace bench
