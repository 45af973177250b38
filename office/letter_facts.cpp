// BLesenDLL, ALesenDLL, SLesenDLL, GetDokuNr: the calls of a letter macro, in its order.
#include <string_view>

#include "office/failure.h"
#include "office/letter.h"
#include "office/readiness.h"
#include "office/text_encoding.h"
#include "office/unattended.h"

namespace office {
namespace {

std::string RoleCode(std::string role) {
  constexpr std::size_t kRoleLength = 2;
  if (role.size() < kRoleLength) role.resize(kRoleLength, ' ');
  return role;
}

// SLesenDLL's result for a case that does not exist: no parties, and no currency.
constexpr std::string_view kUnknownCase = "0|";

DeliveredRecord CaseData(const std::string& caseNumber) {
  const Export& called = ExportNamed("SLesenDLL");
  const std::string delivered = CallExport(called, {caseNumber}).ansiRecord.value_or("");
  if (delivered == kUnknownCase) {
    throw Failure("There is no case " + caseNumber +
                  ". `qlx office show ZTCASE` lists the cases of this office.");
  }
  DeliveredRecord record(called, delivered);
  if (record.IsComplete()) return record;
  throw Failure("Case " + caseNumber + " cannot be read. `qlx call SLesenDLL " + Typed(caseNumber) +
                "` shows what there is of it.");
}

DeliveredRecord PartyInRole(const std::string& caseNumber, const std::string& role) {
  const Export& called = ExportNamed("BLesenDLL");
  const CallOutcome outcome = CallExport(called, {role, caseNumber, "", ""});
  if (outcome.result != 0 && outcome.ansiRecord) return {called, *outcome.ansiRecord};
  if (outcome.ansiRecord) throw Failure("No party was chosen, so there is no letter.");
  const DeliveredRecord caseData = CaseData(caseNumber);  // or it is the case that is missing
  throw Failure("None of the " + caseData["partyCount"] + " parties of case " + caseNumber +
                " is in the role \"" + role + "\". Try another --role.");
}

DeliveredRecord Address(const std::string& caseNumber, const DeliveredRecord& party) {
  const std::string& number = party["addressNumber"];
  // Without a link the fourth argument must still be given, or that of an earlier call would count.
  auto record = ReadExport("ALesenDLL", {caseNumber, number, party["linkNumber"]});
  if (!record) throw Failure("Address " + number + " could not be read.");
  if ((*record)["name"].empty()) {
    throw Failure("Address " + number + " has no contact person with a name to write to.");
  }
  if ((*record)["place"].empty() && (*record)["secondPlace"].empty()) {
    throw Failure("Address " + number + ", of " + (*record)["name"] +
                  ", has no place to send a letter to.");
  }
  return std::move(*record);
}

}  // namespace

LetterFacts ReadLetterFacts(const std::string& caseNumber, const std::string& role) {
  RequireReadableOffice();
  RequireDocumentNumbers();
  const DeliveredRecord party = PartyInRole(caseNumber, RoleCode(role));
  DeliveredRecord address = Address(caseNumber, party);
  // The export takes the first contact person and bank connection then, which nobody has chosen.
  if (WasChoiceMissed()) throw Failure("A choice was not made, so there is no letter.");
  DeliveredRecord caseData = CaseData(caseNumber);
  // Last, because the number is used up.
  const std::int32_t number = CallExport(ExportNamed("GetDokuNr"), {caseNumber}).result;
  if (number <= 0) throw Failure("There was no document number for case " + caseNumber + ".");
  return {caseNumber, number, std::move(address), std::move(caseData)};
}

}  // namespace office
