// The letter that a macro would write: what it reads through the exports, and how it composes it.
#pragma once

#include <string>

#include "office/export_call.h"

namespace office {

struct LetterFacts {
  std::string caseNumber;
  std::int32_t documentNumber;
  DeliveredRecord address;   // of ALesenDLL
  DeliveredRecord caseData;  // of SLesenDLL
};

// Asks the user when several parties, contact persons or bank connections are there to choose from.
// `role` is a role code as macros pass it; the blank of "M " may be left out. Fails when there is
// nobody to write to or nothing to write about, and when nobody answers; no document number is used
// up then.
LetterFacts ReadLetterFacts(const std::string& caseNumber, const std::string& role);

// The letter in German, for paper that bears the office's head already, in lines of at most 72
// characters unless a field is longer.
std::string ComposeLetter(const LetterFacts& facts);

}  // namespace office
