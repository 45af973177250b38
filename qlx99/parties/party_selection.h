// The dialog in which the user picks one of several parties that are in the same role.
#pragma once

#include "cases/case_file.h"
#include "parties/party_reference.h"
#include "parties/role.h"

namespace qlx99 {

// Shows the case's parties in this role in a modal dialog. Returns the reference of the one that
// the user took; empty when none was taken, when the case is gone meanwhile, or when a file cannot
// be opened, of which the user has been told.
PartyReference ShowPartySelection(const CaseNumberKey& key, const Role& role);

}  // namespace qlx99
