#include "users/user_file.h"

#include "store/record_file.h"

namespace qlx99 {

void LookupUser(const DataRoot& dataRoot, std::int32_t userNumber, ResultRecord& dest) {
  RecordFile<UserRecord> users(dataRoot);
  if (!users.IsOpen() || users.GetEqual(UserRecord::byNumber, userNumber) != btrieve::kSuccess) {
    dest.AddEmptyFields(2);
    return;
  }
  dest.AddField(users.Current()[UserRecord::name]);
  dest.AddField(users.Current()[UserRecord::shortSign]);
}

}  // namespace qlx99
