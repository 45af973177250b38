// Compiled into every library that has a DllMain, as its last source, so that the library's own
// objects are ready when DllMain hears of the attachment and still alive when it hears of the end.
#include "platform/libraries.h"
#include "platform/unsupported.h"

namespace {

class Attachment {
 public:
  Attachment() : module_(platform::ModuleAt(this)) {
    if (!DllMain(module_, DLL_PROCESS_ATTACH, nullptr)) {
      platform::Unsupported("DllMain", "refusing to be attached");
    }
  }
  ~Attachment() { DllMain(module_, DLL_PROCESS_DETACH, nullptr); }
  Attachment(const Attachment&) = delete;
  Attachment& operator=(const Attachment&) = delete;

 private:
  HMODULE module_;
};

const Attachment kAttachment;

}  // namespace
