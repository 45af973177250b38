// In which of its two kinds the library works for this process.
#pragma once

#include "frame/attach.h"

namespace office {

inline bool IsDelegated() {
  return qlx99::CurrentAttachment().installKind == qlx99::InstallKind::kDelegated;
}

inline const char* KindName() { return IsDelegated() ? "delegated" : "local"; }

}  // namespace office
