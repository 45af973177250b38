#include "frame/attach.h"

#include <algorithm>

#include "frame/arguments.h"
#include "frame/login_window.h"
#include "frame/registry.h"
#include "frame/sibling_library.h"

namespace qlx99 {
namespace {

Attachment attachment;

InstallKind ConfiguredInstallKind() {
  const WholeText programName = ReadWholeText(kProgramName);
  return InstallKindOf(programName == nullptr ? "" : programName.get());
}

// Letters of ASCII are all that counts here, whatever the host's code page.
char UpperCase(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

const Attachment& CurrentAttachment() { return attachment; }

InstallKind InstallKindOf(std::string_view programName) {
  constexpr std::string_view kInquiryProgramName = "TELQ32";
  const auto* const found = std::search(
      programName.begin(), programName.end(), kInquiryProgramName.begin(),
      kInquiryProgramName.end(), [](char given, char upper) { return UpperCase(given) == upper; });
  return found == programName.end() ? InstallKind::kLocal : InstallKind::kDelegated;
}

void AttachLibrary(HINSTANCE module) { attachment = {module, ConfiguredInstallKind()}; }

void DetachLibrary(Detachment why) {
  DestroyLoginWindow();
  if (why == Detachment::kFreed) DisownLoginWindow();
  FreeSiblingLibrary();
}

}  // namespace qlx99

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
  if (reason == DLL_PROCESS_ATTACH) qlx99::AttachLibrary(module);
  if (reason == DLL_PROCESS_DETACH) {
    qlx99::DetachLibrary(reserved == nullptr ? qlx99::Detachment::kFreed
                                             : qlx99::Detachment::kProcessEnds);
  }
  return TRUE;
}
