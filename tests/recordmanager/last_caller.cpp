// A library that calls back when it is detached, which for a process that ends is after its other
// threads have gone.
#include "platform/windows_api.h"

extern "C" {
__declspec(dllexport) void (*AtDetachment)() = nullptr;
}

BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD reason, void* /*processEnds*/) {
  if (reason == DLL_PROCESS_DETACH && AtDetachment != nullptr) AtDetachment();
  return TRUE;
}
