// Amounts as a German letter writes them.
#pragma once

#include "store/record.h"
#include "store/result_line.h"

namespace qlx99 {

// Adds the amount as a field, with two decimals behind a ",", and a "." between groups of three
// digits, of which there are at most four: 1234567.891 becomes 1.234.567,89. An amount that is no
// number, or infinite, gives an empty field: a gap in a letter is seen, a wrong amount is not.
void FormatAmount(Amount amount, ResultLine& dest);

}  // namespace qlx99
