#include "office/follow_up_table.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "office/export_call.h"
#include "office/failure.h"
#include "office/readiness.h"
#include "office/text_table.h"
#include "store/dates.h"

namespace office {
namespace {

// Whether the export reports the follow-up as delivered does not matter: it does not for one
// without date and kind, although it is there.
std::vector<DeliveredRecord> ReadFollowUps(const std::string& caseNumber) {
  const std::int32_t count = CallExport(ExportNamed("WVInit"), {caseNumber}).result;
  const Export& next = ExportNamed("WVNext");
  std::vector<DeliveredRecord> followUps;
  for (std::int32_t index = 1; index <= count; ++index) {
    const CallOutcome outcome = CallExport(next, {caseNumber, std::to_string(index)});
    if (outcome.ansiRecord) followUps.emplace_back(next, *outcome.ansiRecord);
  }
  return followUps;
}

std::string PartyName(const std::string& caseNumber, const std::string& position) {
  if (position == "0") return {};
  const auto party = ReadExport("BListeNext", {caseNumber, position});
  return party ? (*party)["name"] : position;
}

// A day number; no date comes behind all dates. A follow-up that cannot be read field by field
// stands there as it is, before all others: it may be due.
int WhenDue(const DeliveredRecord& followUp) {
  if (!followUp.IsComplete()) return -1;
  const std::string& date = followUp["dueDate"];
  return date.empty() ? qlx99::kNoDate : qlx99::DayNumberOf(qlx99::DateIn(date));
}

std::vector<std::string> RowOf(const DeliveredRecord& followUp, const std::string& caseNumber) {
  if (!followUp.IsComplete()) {
    return {"?", "", "cannot be told apart: " + followUp.Text(), "", "", "", ""};
  }
  return {followUp["dueDate"],
          followUp["kindName"],
          followUp["text"],
          followUp["userSign"],
          followUp["secondUserSign"],
          PartyName(caseNumber, followUp["partyPosition"]),
          followUp["id"]};
}

}  // namespace

std::string FollowUpTable(const std::string& caseNumber) {
  RequireReadableOffice();
  std::vector<DeliveredRecord> followUps = ReadFollowUps(caseNumber);
  if (followUps.empty())
    throw Failure("Case " + caseNumber + " has no follow-ups, or there is no such case.");
  std::ranges::stable_sort(followUps, {}, WhenDue);
  std::vector<std::vector<std::string>> rows;
  std::ranges::transform(
      followUps, std::back_inserter(rows),
      [&caseNumber](const DeliveredRecord& followUp) { return RowOf(followUp, caseNumber); });
  return TextTable({"Date", "Kind", "Text", "User", "Second", "Party", "ID"}, rows);
}

}  // namespace office
