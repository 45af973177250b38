#include <string>

#include "platform/windows_api.h"

namespace {

// Built when the library is loaded, not when it is compiled.
const std::string kGreeting(3, 'x');

HINSTANCE attachedAs = nullptr;
int attachments = 0;
bool objectsWereReady = false;
int* detachments = nullptr;

}  // namespace

extern "C" {

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) {
    attachedAs = module;
    ++attachments;
    objectsWereReady = kGreeting == "xxx";
  }
  if (reason == DLL_PROCESS_DETACH && detachments != nullptr && kGreeting == "xxx") {
    ++*detachments;
  }
  return TRUE;
}

HINSTANCE AttachedAs() { return attachedAs; }
int Attachments() { return attachments; }
bool ObjectsWereReadyAtAttachment() { return objectsWereReady; }
void CountDetachmentsIn(int* counter) { detachments = counter; }

}  // extern "C"
