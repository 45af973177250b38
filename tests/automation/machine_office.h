// An office that is registered for all programs of the machine.
#pragma once

#include <string>

#include "office/sample_office.h"
#include "platform/windows_api.h"
#include "testkit/temporary_folder.h"

namespace qlx99::tests {

// As long as it exists, the registered office is a new sample office of its own; then what was
// registered before.
class MachineOffice {
 public:
  MachineOffice() {
    Move(HKEY_LOCAL_MACHINE, kKey, HKEY_CURRENT_USER, kSaved);
    Qlx("office|create|" + folder_.Text());
    Qlx("setup|" + folder_.Text());
  }
  ~MachineOffice() {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, kKey);
    Move(HKEY_CURRENT_USER, kSaved, HKEY_LOCAL_MACHINE, kKey);
  }
  MachineOffice(const MachineOffice&) = delete;
  MachineOffice& operator=(const MachineOffice&) = delete;

 private:
  static constexpr auto kKey = "SOFTWARE\\Quorvane\\Stelvora";
  static constexpr auto kSaved = "Software\\qlx99 tests saved";

  static void Move(HKEY from, const std::string& path, HKEY to, const std::string& newPath) {
    HKEY key = nullptr;
    RegCreateKeyA(to, newPath.c_str(), &key);
    RegCopyTreeA(from, path.c_str(), key);
    RegDeleteTreeA(from, path.c_str());
    RegCloseKey(key);
  }

  testkit::TemporaryFolder folder_;
};

}  // namespace qlx99::tests
