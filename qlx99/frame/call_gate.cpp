#include "frame/call_gate.h"

#include "frame/attach.h"
#include "frame/delegated_calls.h"
#include "frame/host_messages.h"
#include "frame/login_handshake.h"

namespace qlx99 {

GateAnswer CallGate(const char* exportName, std::int32_t* result, const GateArguments& arguments) {
  *result = 0;
  if (CurrentAttachment().installKind == InstallKind::kLocal) return GateAnswer::kWorkHere;
  const HeldQuit untilTheCallIsDone;
  if (!ConfirmLogin()) return GateAnswer::kRefused;
  ForwardCall(exportName, arguments, result);
  return GateAnswer::kDelegated;
}

}  // namespace qlx99
