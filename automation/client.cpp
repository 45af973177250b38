#include "client.h"

// Windows' own must come before them.
#include <rpc.h>
#include <rpcdcep.h>

namespace automation {

Client::~Client() {
  if (wait_ != nullptr) UnregisterWait(wait_);
  if (process_ != nullptr) CloseHandle(process_);
}

void Client::MeetCaller() {
  unsigned long id = 0;
  if (isMet_ || I_RpcBindingInqLocalClientPID(nullptr, &id) != RPC_S_OK) return;
  if (isMet_.exchange(true)) return;
  desk_->SetClient(id);
  process_ = OpenProcess(SYNCHRONIZE, FALSE, id);
  if (process_ == nullptr) {
    if (GetLastError() == ERROR_INVALID_PARAMETER) desk_->End();  // it has gone meanwhile
    return;
  }
  RegisterWaitForSingleObject(&wait_, process_, EndDesk, desk_, INFINITE, WT_EXECUTEONLYONCE);
}

void CALLBACK Client::EndDesk(void* desk, BOOLEAN /*timedOut*/) { static_cast<Desk*>(desk)->End(); }

}  // namespace automation
