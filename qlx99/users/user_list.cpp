// UserInit and UserNext: how many users the office has, and the user at a position in the order of
// their numbers. A macro asks for positions 1 up to the count.
#include "frame/arguments.h"
#include "frame/call_gate.h"
#include "frame/exports.h"
#include "store/record_file.h"
#include "users/user_file.h"

namespace qlx99 {
namespace {

std::int32_t CountUsers() {
  if (!EnsureRecordManager()) return 0;
  const auto dataRoot = ReadDataRoot(kNoDataPathForUsers);
  if (!dataRoot) return 0;
  RecordFile<UserRecord> users(*dataRoot);
  if (!users.IsOpen()) return 0;
  return CountRecords(users.WalkAll(UserRecord::byNumber));
}

// Composes nothing for a position beyond the last user.
void ReadUser(std::int32_t position, ResultLine& dest) {
  const auto dataRoot = ReadDataRoot(kNoDataPathForUserData);
  if (!dataRoot) return;
  RecordFile<UserRecord> users(*dataRoot);
  if (!users.IsOpen()) return;
  if (!WalkToPosition(users.WalkAll(UserRecord::byNumber), position)) return;

  const auto& user = users.Current();
  dest.AddField(user[UserRecord::name]);
  dest.AddField(user[UserRecord::thirdText]);
  dest.AddField(user[UserRecord::secondText]);
  dest.AddField(user[UserRecord::shortSign]);
  dest.AppendNumber(user[UserRecord::number]);
}

std::int32_t DeliverUser(const char* index, char* buffer) {
  if (!EnsureRecordManager()) return 0;
  ResultLine user;
  ReadUser(LeadingNumber(index), user);
  return HandOver(user, buffer, HandOverForm::kLineOnly);
}

}  // namespace

std::int32_t WINAPI UserInit() { return PassGate("UserInit", CountUsers); }

std::int32_t WINAPI UserNext(const char* index, char* record) {
  return PassGate("UserNext", DeliverUser, index, record);
}

}  // namespace qlx99
