#include "office/readiness.h"

#include <system_error>
#include <tuple>

#include "frame/registry.h"
#include "office/failure.h"
#include "office/host.h"
#include "office/install_kind.h"
#include "office/record_manager.h"

namespace office {

std::filesystem::path ConfiguredDataRoot() {
  const auto dataRoot = qlx99::ReadConfiguration<qlx99::kDataRoot>();
  if (dataRoot && dataRoot->front() != '\0') return PathOfNative(dataRoot->data());
  throw Failure("No office is configured: there is no DataRoot below " +
                std::string(qlx99::kOptionsKey) + " in " + RegistryPlace() +
                ". `qlx setup DIR` writes it.");
}

std::filesystem::path ExistingDataRoot() {
  std::filesystem::path folder = ConfiguredDataRoot();
  std::error_code error;
  if (std::filesystem::is_directory(folder, error)) return folder;
  throw Failure("There is no folder " + PathText(folder) +
                ", which DataRoot names. Connect its drive, or name another with `qlx setup`.");
}

void RequireReadableOffice() {
  RequireRegistry();
  if (IsDelegated()) return;
  std::ignore = ExistingDataRoot();
  const RecordManager manager;
}

}  // namespace office
