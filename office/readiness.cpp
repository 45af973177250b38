#include "office/readiness.h"

#include <algorithm>
#include <cstring>
#include <system_error>

#include "caseparties/document_number_file.h"
#include "cases/case_file.h"
#include "office/host.h"
#include "office/install_kind.h"
#include "office/record_manager.h"
#include "record_files.h"

namespace office {
namespace {

// In another file under its name the library finds none of its records.
void RequireFile(const std::filesystem::path& folder, const qlx99::RecordLayout& layout) {
  const RecordManager manager;
  const auto length = TableFile(manager, folder, layout).Facts().file.recordLength;
  if (length == layout.file.length) return;
  throw Failure(std::string(layout.file.name) + " is another file: its records have " +
                std::to_string(length) + " bytes. `qlx office check` tells more.");
}

}  // namespace

bool IsNumber(const qlx99::RegistryValue& value) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, value.keyPath, 0, KEY_READ, &key) != ERROR_SUCCESS) {
    return false;
  }
  DWORD type = REG_SZ;
  DWORD size = 0;
  RegQueryValueExA(key, value.name, nullptr, &type, nullptr, &size);
  RegCloseKey(key);
  return type == REG_DWORD;
}

std::string WhyNotConfigured(const qlx99::RegistryValue& value) {
  if (IsNumber(value)) {
    return "is a number (REG_DWORD) in " + RegistryPlace() + "; make it a text (REG_SZ).";
  }
  const qlx99::WholeText whole = qlx99::ReadWholeText(value);
  const std::size_t length = whole == nullptr ? 0 : std::strlen(whole.get());
  if (length >= value.size) {
    return "has " + std::to_string(length) + " characters; the library reads at most " +
           std::to_string(value.size - 1) + ". Name a shorter path.";
  }
  return std::string("is not set below ") + value.keyPath + " in " + RegistryPlace() +
         (IsDelegated() ? "; install the office's programs on this machine."
                        : "; `qlx setup DIR` sets it.");
}

std::filesystem::path ConfiguredDataRoot() try {
  return PathOfNative(ConfiguredText<qlx99::kDataRoot>());
} catch (const Failure& failure) {
  throw Failure(std::string("No office is configured: ") + qlx99::kDataRoot.name + " " +
                failure.what());
}

std::filesystem::path ExistingDataRoot() {
  std::filesystem::path folder = ConfiguredDataRoot();
  const std::string lack = LackOf(folder);
  if (lack.empty()) return folder;
  throw Failure("There is " + lack +
                ", which DataRoot names. Connect its drive, or name another with `qlx setup`.");
}

std::string LackOf(const std::filesystem::path& folder) {
  std::error_code error;
  if (!std::filesystem::is_directory(folder, error)) return "no folder " + PathText(folder);
  const bool hasAny = std::ranges::any_of(qlx99::kRecordFiles, [&](const auto& layout) {
    const auto type = std::filesystem::status(folder / layout.file.name, error).type();
    return type != std::filesystem::file_type::not_found;  // it may also be one that cannot be read
  });
  return hasAny ? "" : "no record file (ZT*.KRV) in the folder " + PathText(folder);
}

void RequireReadableOffice() {
  RequireRegistry();
  if (IsDelegated()) return;
  RequireFile(ExistingDataRoot(), qlx99::LayoutOf<qlx99::CaseRecord>());
}

void RequireDocumentNumbers() {
  if (IsDelegated()) return;
  RequireFile(ExistingDataRoot(), qlx99::LayoutOf<qlx99::DocumentNumberRecord>());
}

}  // namespace office
