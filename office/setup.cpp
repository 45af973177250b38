#include "office/setup.h"

#include <vector>

#include "cases/case_file.h"
#include "frame/registry.h"
#include "office/failure.h"
#include "office/host.h"
#include "office/new_office.h"
#include "office/text_encoding.h"

namespace office {
namespace {

struct Setting {
  const qlx99::RegistryValue& value;
  std::string text;      // as the registry takes it
  std::string old = {};  // as it was; empty when there was none
};

std::vector<Setting> SettingsFor(const std::filesystem::path& root) {
  // No program name: this office needs no other library's help.
  std::vector<Setting> settings{{qlx99::kDataRoot, NativeText(root)},
                                {qlx99::kDocuRoot, NativeText(DocumentFolder(root))},
                                {qlx99::kProgramRoot, NativeText(root)},
                                {qlx99::kProgramName, ""}};
  for (Setting& setting : settings) {
    if (setting.text.size() >= setting.value.size) {
      throw Failure("The path " + ShownText(setting.text) + " is too long: " + setting.value.name +
                    " holds at most " + std::to_string(setting.value.size - 1) + " characters.");
    }
    if (const auto old = qlx99::ReadWholeText(setting.value)) setting.old = old.get();
  }
  return settings;
}

bool WouldReplace(const Setting& setting) {
  return !setting.old.empty() && setting.old != setting.text;
}

std::string Place() { return RegistryPlace() + ",\nHKEY_LOCAL_MACHINE\\" + qlx99::kOptionsKey; }

void RefuseToReplace(const std::vector<Setting>& settings, const std::filesystem::path& root) {
  std::string lines;
  for (const Setting& setting : settings) {
    if (!WouldReplace(setting)) continue;
    lines += std::string("  ") + setting.value.name + " = " + ShownText(setting.old) + "\n";
  }
  if (lines.empty()) return;
  throw Failure("There are other values in " + Place() + ":\n" + lines +
                "Nothing was changed. `qlx setup " + Typed(PathText(root)) +
                " --force` replaces them.");
}

void WriteValue(const qlx99::RegistryValue& value, const std::string& text) {
  HKEY key = nullptr;
  LSTATUS status = RegCreateKeyExA(HKEY_LOCAL_MACHINE, value.keyPath, 0, nullptr,
                                   REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &key, nullptr);
  if (status == ERROR_SUCCESS) {
    status = RegSetValueExA(key, value.name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                            static_cast<DWORD>(text.size() + 1));
    RegCloseKey(key);
  }
  if (status == ERROR_SUCCESS) return;
  throw Failure(std::string(value.name) + " cannot be written to " + RegistryPlace() + " (error " +
                std::to_string(status) + "). Try it as an administrator, or check the rights.");
}

}  // namespace

std::string SetUp(const std::filesystem::path& directory, Replacing replacing) {
  RequireReadableRegistry();
  const std::filesystem::path root =
      std::filesystem::weakly_canonical(std::filesystem::absolute(directory));
  if (!std::filesystem::exists(root / qlx99::CaseRecord::file.name)) {
    throw Failure("There is no office in " + PathText(root) + ". `qlx office create " +
                  Typed(PathText(directory)) + "` makes one.");
  }
  const std::vector<Setting> settings = SettingsFor(root);
  if (replacing == Replacing::kNothing) RefuseToReplace(settings, root);
  std::string lines = "Written to " + Place() + ":\n";
  for (const Setting& setting : settings) {
    WriteValue(setting.value, setting.text);
    lines += std::string("  ") + setting.value.name + " = " + ShownText(setting.text) +
             (WouldReplace(setting) ? "  (before: " + ShownText(setting.old) + ")" : "") + "\n";
  }
  return lines;
}

}  // namespace office
