// Who may call this program.
#pragma once

namespace automation {

// The user who runs it, from this machine, and Windows itself. Returns whether that is settled.
bool AdmitOnlyThisUser();

}  // namespace automation
