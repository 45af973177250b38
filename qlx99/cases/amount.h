// Amounts as a German letter writes them.
#pragma once

#include "store/result_record.h"

namespace qlx99 {

// Adds the amount as a field, with two decimals behind a ",", and a "." between groups of three
// digits, of which there are at most four: 1234567.891 becomes 1.234.567,89. Bytes that are no
// number at all give an empty field.
void FormatAmount(double amount, ResultRecord& dest);

}  // namespace qlx99
