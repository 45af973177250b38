#include "test_library.h"

#include <string>

namespace {

// Built when the library is loaded, not when it is compiled.
const std::string kGreeting(3, 'x');

Attachment attachment;

}  // namespace

extern "C" Attachment* Heard() { return &attachment; }

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
  const bool objectsAreThere = kGreeting == "xxx";
  if (reason == DLL_PROCESS_ATTACH) {
    attachment = {module, attachment.count + 1, objectsAreThere, nullptr};
  }
  if (reason == DLL_PROCESS_DETACH && attachment.atDetachment != nullptr && objectsAreThere) {
    attachment.atDetachment();
  }
  return TRUE;
}
