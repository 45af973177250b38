// WVNew, WVChange and WVDelete: the writers of follow-ups. What they acknowledge with -1 is
// written; what they refuse is not. Each checks its arguments in an order of its own, which its
// users know: the first thing wrong is the one message that they see.
#include <optional>

#include "cases/case_file.h"
#include "followups/follow_up_file.h"
#include "frame/arguments.h"
#include "frame/call_gate.h"
#include "frame/exports.h"
#include "store/dates.h"
#include "store/record_file.h"
#include "store/text_buffer.h"

namespace qlx99 {
namespace {

constexpr std::int32_t kDone = -1;
constexpr std::int32_t kNotDone = 0;

constexpr std::size_t kTextLength = FollowUpRecord::text.width;

// What a macro may set of a follow-up, taken from its memory at once: while a message is open, the
// host may put its next call's texts there.
struct FollowUpArguments {
  std::int32_t kindId;
  std::optional<Date> date;
  std::int32_t userId;
  std::int32_t secondUserId;
  std::int32_t partyRecordId;
  TextBuffer<kTextLength> text;
  bool textFits;
};

bool OnlyBlanksFollow(const char* at) {
  while (*at == ' ') ++at;
  return *at == '\0';
}

// Blanks at the end do not count: macros pass texts in strings of a fixed length, filled with them.
bool TextFits(const char* text) {
  const bool isShort = BoundedText(text, kTextLength).size() < kTextLength;
  return isShort || OnlyBlanksFollow(text + kTextLength);
}

// Nothing when the text is shorter than a date; what stands behind the date does not count.
std::optional<Date> GivenDate(const char* dueDate) {
  const std::string_view text = BoundedText(dueDate, kDateLength);
  return text.size() == kDateLength ? std::optional(DateIn(text)) : std::nullopt;
}

FollowUpArguments TakeArguments(const char* kindId, const char* dueDate, const char* userId,
                                const char* secondUserId, const char* partyRecordId,
                                const char* text) {
  FollowUpArguments taken{.kindId = LeadingNumber(kindId),
                          .date = GivenDate(dueDate),
                          .userId = LeadingNumber(userId),
                          .secondUserId = LeadingNumber(secondUserId),
                          .partyRecordId = LeadingNumber(partyRecordId),
                          .text = {},
                          .textFits = TextFits(text)};
  taken.text.Append(BoundedText(text, kTextLength));
  return taken;
}

// Shows the message unless the condition holds, and says whether it does.
bool Require(bool condition, const Message& message) {
  if (!condition) ShowMessage(message);
  return condition;
}

// There is no lower bound, and no check whether the month has that day.
bool CheckDate(const std::optional<Date>& date) {
  if (!Require(date.has_value(), kDateMissing)) return false;
  return Require(date->day <= 31 && date->month <= 12 && date->year <= 2050, kDateInvalid);
}

bool CheckDateAndText(const FollowUpArguments& arguments) {
  return CheckDate(arguments.date) && Require(arguments.textFits, kFollowUpTextTooLong);
}

// Of arguments that were checked.
void SetArguments(const FollowUpArguments& arguments, Record<FollowUpRecord>& record) {
  record.Set(FollowUpRecord::date, DayNumberOf(*arguments.date));
  record.Set(FollowUpRecord::kindId, arguments.kindId);
  record.Set(FollowUpRecord::text, arguments.text.Bytes());
  record.Set(FollowUpRecord::userId, arguments.userId);
  record.Set(FollowUpRecord::secondUserId, arguments.secondUserId);
  record.Set(FollowUpRecord::partyRecordId, arguments.partyRecordId);
  record.Set(FollowUpRecord::flag, kWrittenFlag);
}

std::int32_t FindCaseOfNewFollowUp(const char* caseNumber) {
  const auto dataRoot = ReadDataRoot(kNoDataPathForFollowUps);
  return dataRoot ? LookupCaseId(*dataRoot, CaseNumberKey(caseNumber)) : kNoCase;
}

std::int32_t Insert(std::int32_t caseId, const FollowUpArguments& arguments) {
  const auto dataRoot = ReadDataRoot(kNoDataPathForWritingFollowUps);
  if (!dataRoot) return kNotDone;
  RecordFile<FollowUpRecord> followUps(*dataRoot);
  if (!followUps.IsOpen()) return kNotDone;

  Record<FollowUpRecord> record;
  record.Set(FollowUpRecord::caseId, caseId);
  SetArguments(arguments, record);
  return followUps.Insert(FollowUpRecord::byId, record) == btrieve::kSuccess ? kDone : kNotDone;
}

std::int32_t NewFollowUp(const char* caseNumber, const char* kindId, const char* dueDate,
                         const char* userId, const char* secondUserId, const char* partyRecordId,
                         const char* text) {
  if (!EnsureRecordManager()) return kNotDone;
  const auto arguments = TakeArguments(kindId, dueDate, userId, secondUserId, partyRecordId, text);
  const std::int32_t caseId = FindCaseOfNewFollowUp(caseNumber);
  if (caseId == kNoCase) return kNotDone;

  if (!Require(arguments.kindId != 0, kFollowUpInvalid)) return kNotDone;
  if (!Require(arguments.userId != 0, kUserInvalid)) return kNotDone;
  if (!CheckDateAndText(arguments)) return kNotDone;
  return Insert(caseId, arguments);
}

std::int32_t Change(std::int32_t followUpId, const FollowUpArguments& arguments) {
  const auto dataRoot = ReadDataRoot(kNoDataPathForWritingFollowUps);
  if (!dataRoot) return kNotDone;
  RecordFile<FollowUpRecord> followUps(*dataRoot);
  if (!followUps.IsOpen()) return kNotDone;
  if (followUps.GetEqual(FollowUpRecord::byId, followUpId) != btrieve::kSuccess) return kNotDone;

  auto record = followUps.Current();
  SetArguments(arguments, record);
  return followUps.Update(FollowUpRecord::byId, record) == btrieve::kSuccess ? kDone : kNotDone;
}

std::int32_t ChangeFollowUp(const char* followUpId, const char* kindId, const char* dueDate,
                            const char* userId, const char* secondUserId, const char* partyRecordId,
                            const char* text) {
  const std::int32_t id = LeadingNumber(followUpId);
  const auto arguments = TakeArguments(kindId, dueDate, userId, secondUserId, partyRecordId, text);
  if (!Require(id != 0 || arguments.kindId != 0, kFollowUpInvalid)) return kNotDone;
  if (!Require(arguments.userId != 0, kUserInvalid)) return kNotDone;
  if (!EnsureRecordManager()) return kNotDone;
  if (!CheckDateAndText(arguments)) return kNotDone;
  return Change(id, arguments);
}

std::int32_t DeleteFollowUp(const char* followUpId) {
  const std::int32_t id = LeadingNumber(followUpId);
  if (!Require(id != 0, kFollowUpInvalid)) return kNotDone;
  if (!EnsureRecordManager()) return kNotDone;
  const auto dataRoot = ReadDataRoot(kNoDataPathForWritingFollowUps);
  if (!dataRoot) return kNotDone;
  RecordFile<FollowUpRecord> followUps(*dataRoot);
  if (!followUps.IsOpen()) return kNotDone;
  if (followUps.GetEqual(FollowUpRecord::byId, id) != btrieve::kSuccess) return kNotDone;
  return followUps.Delete(FollowUpRecord::byId, id) == btrieve::kSuccess ? kDone : kNotDone;
}

}  // namespace

std::int32_t WINAPI WVNew(const char* caseNumber, const char* kindId, const char* dueDate,
                          const char* userId, const char* secondUserId, const char* partyRecordId,
                          const char* text) {
  return PassGate("WVNew", NewFollowUp, caseNumber, kindId, dueDate, userId, secondUserId,
                  partyRecordId, text);
}

std::int32_t WINAPI WVChange(const char* followUpId, const char* kindId, const char* dueDate,
                             const char* userId, const char* secondUserId,
                             const char* partyRecordId, const char* text) {
  return PassGate("WVChange", ChangeFollowUp, followUpId, kindId, dueDate, userId, secondUserId,
                  partyRecordId, text);
}

std::int32_t WINAPI WVDelete(const char* followUpId) {
  return PassGate("WVDelete", DeleteFollowUp, followUpId);
}

}  // namespace qlx99
