#include "office/readiness.h"

#include "office/failure.h"
#include "office/host.h"
#include "office/install_kind.h"
#include "office/record_manager.h"
#include "office/show_file.h"

namespace office {

void RequireReadableOffice() {
  RequireRegistry();
  if (IsDelegated()) return;
  const std::filesystem::path folder = ConfiguredDataRoot();
  std::error_code error;
  if (!std::filesystem::is_directory(folder, error)) {
    throw Failure("There is no folder " + PathText(folder) +
                  ", which DataRoot names. Connect its drive, or name another with `qlx setup`.");
  }
  const RecordManager manager;
}

}  // namespace office
