#include "frame/attach.h"

#include <cstring>

#include "frame/arguments.h"
#include "frame/bytes.h"
#include "frame/login_window.h"
#include "frame/registry.h"
#include "frame/sibling_library.h"

namespace qlx99 {
namespace {

Attachment attachment;

InstallKind ConfiguredInstallKind() {
  const auto programName = ReadConfiguration<kProgramName>();
  if (!programName) return InstallKind::kLocal;
  return InstallKindOf(BoundedText(programName->data(), programName->size()));
}

}  // namespace

const Attachment& CurrentAttachment() { return attachment; }

InstallKind InstallKindOf(std::string_view programName) {
  std::array<char, kProgramName.size> upper{};
  const std::size_t length = CopyBytes(programName, upper.data(), upper.size());
  CharUpperBuffA(upper.data(), static_cast<DWORD>(length));
  const bool delegated =
      std::string_view(upper.data(), length).find("TELQ32") != std::string_view::npos;
  return delegated ? InstallKind::kDelegated : InstallKind::kLocal;
}

void AttachLibrary(HINSTANCE module) { attachment = {module, ConfiguredInstallKind()}; }

void DetachLibrary() {
  DestroyLoginWindow();
  FreeSiblingLibrary();
}

}  // namespace qlx99

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) qlx99::AttachLibrary(module);
  if (reason == DLL_PROCESS_DETACH) qlx99::DetachLibrary();
  return TRUE;
}
