// Fields of a result that come from one record:
//
//   RecordFields(users.Find(UserRecord::byNumber, 3), line).Add(UserRecord::name).Add(...);
//
// Where there is no such record, each of them is empty.
#pragma once

#include <concepts>
#include <string_view>

#include "store/dates.h"
#include "store/record.h"
#include "store/result_line.h"

namespace qlx99 {

template <class Layout>
class RecordFields {
 public:
  // `record` may be null.
  RecordFields(const Record<Layout>* record, ResultLine& dest) : record_(record), dest_(dest) {}

  RecordFields& Add(const typename Record<Layout>::TextField& field) {
    dest_.AddField(record_ == nullptr ? std::string_view() : (*record_)[field]);
    return *this;
  }
  RecordFields& Add(const typename Record<Layout>::DayField& field) {
    dest_.AddDay(record_ == nullptr ? kNoDate : (*record_)[field]);
    return *this;
  }

  // One field, and no more, which the function adds; it is called with the record. Without a record
  // there is one empty field in its place.
  template <std::invocable<const Record<Layout>&> Function>
  RecordFields& Add(const Function& addField) {
    if (record_ == nullptr) {
      dest_.AddEmptyField();
    } else {
      addField(*record_);
    }
    return *this;
  }

 private:
  const Record<Layout>* record_;
  ResultLine& dest_;
};

}  // namespace qlx99
