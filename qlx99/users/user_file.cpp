#include "users/user_file.h"

#include "store/record_fields.h"
#include "store/record_file.h"

namespace qlx99 {

void LookupUser(const DataRoot& dataRoot, std::int32_t userNumber, ResultLine& dest) {
  RecordFile<UserRecord> users(dataRoot);
  RecordFields(users.Find(UserRecord::byNumber, userNumber), dest)
      .Add(UserRecord::name)
      .Add(UserRecord::shortSign);
}

}  // namespace qlx99
