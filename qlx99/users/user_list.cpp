// UserInit and UserNext: how many users the office has, and the user at a position in the order of
// their numbers. A macro asks for positions 1 up to the count.
#include "frame/call_gate.h"
#include "frame/exports.h"
#include "store/catalogue.h"
#include "users/user_file.h"

namespace qlx99 {
namespace {

std::int32_t CountUsers() {
  return CountCatalogue<UserRecord>(UserRecord::byNumber, kNoDataPathForUsers);
}

void ComposeUser(const Record<UserRecord>& user, ResultLine& dest) {
  dest.AddField(user[UserRecord::name]);
  dest.AddField(user[UserRecord::thirdText]);
  dest.AddField(user[UserRecord::secondText]);
  dest.AddField(user[UserRecord::shortSign]);
  dest.AppendNumber(user[UserRecord::number]);
}

std::int32_t DeliverUser(const char* index, char* buffer) {
  return DeliverFromCatalogue<UserRecord>(UserRecord::byNumber, kNoDataPathForUserData, index,
                                          buffer, ComposeUser);
}

}  // namespace

std::int32_t WINAPI UserInit() { return PassGate("UserInit", CountUsers); }

std::int32_t WINAPI UserNext(const char* index, char* record) {
  return PassGate("UserNext", DeliverUser, index, record);
}

}  // namespace qlx99
