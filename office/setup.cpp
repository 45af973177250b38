#include "office/setup.h"

#include "cases/case_file.h"
#include "frame/registry.h"
#include "office/failure.h"
#include "office/host.h"
#include "office/new_office.h"

namespace office {
namespace {

void WriteValue(const qlx99::RegistryValue& value, const std::string& text) {
  if (text.size() >= value.size) {
    throw Failure("The path " + text + " is too long: " + value.name + " holds at most " +
                  std::to_string(value.size - 1) + " characters.");
  }
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

std::string SetUp(const std::filesystem::path& directory) {
  const std::filesystem::path root =
      std::filesystem::weakly_canonical(std::filesystem::absolute(directory));
  if (!std::filesystem::exists(root / qlx99::CaseRecord::file.name)) {
    throw Failure("There is no office in " + PathText(root) + ". `qlx office create " +
                  PathText(directory) + "` makes one.");
  }
  struct Setting {
    const qlx99::RegistryValue& value;
    std::filesystem::path path;
  };
  // No program name: this office needs no other library's help.
  const Setting settings[] = {{qlx99::kDataRoot, root},
                              {qlx99::kDocuRoot, DocumentFolder(root)},
                              {qlx99::kProgramRoot, root},
                              {qlx99::kProgramName, {}}};
  std::string lines =
      "Written to " + RegistryPlace() + ",\nHKEY_LOCAL_MACHINE\\" + qlx99::kOptionsKey + ":\n";
  for (const Setting& setting : settings) {
    WriteValue(setting.value, NativeText(setting.path));
    lines += std::string("  ") + setting.value.name + " = " + PathText(setting.path) + "\n";
  }
  return lines;
}

}  // namespace office
