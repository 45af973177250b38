// The automation server, registered for all users, in an office that is registered for all programs
// of the machine; and scripts of the system's script host. All of them are 32-bit ones here, as the
// Windows of these tests is.
#pragma once

#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

#include "office/sample_office.h"
#include "office/text_encoding.h"
#include "platform/windows_api.h"
#include "support/library.h"
#include "testkit/files.h"
// <windows.h> first: this builds on it.
#include <tlhelp32.h>

namespace qlx99::tests {

namespace fs = std::filesystem;

using testkit::ProductFolder;
using testkit::TemporaryFolder;

inline const std::string kClassKeys[] = {"qlx99.Library", "qlx99.Library.1",
                                         "CLSID\\{A3F2BE8F-F156-4BB0-B3BA-7CA73F004344}"};

inline bool Eventually(const std::function<bool()>& isSo) {
  constexpr int kTimes = 3000;
  for (int i = 0; i < kTimes; ++i) {
    if (isSo()) return true;
    Sleep(10);
  }
  return false;
}

inline int CountServers() {
  int count = 0;
  HANDLE processes = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32 process{};
  process.dwSize = sizeof process;
  for (BOOL more = Process32First(processes, &process); more != FALSE;
       more = Process32Next(processes, &process)) {
    if (process.szExeFile == std::string("qlx99server.exe")) ++count;
  }
  CloseHandle(processes);
  return count;
}

// What a program writes, when it has ended. The outer quotation marks are the command
// interpreter's.
inline std::string TextFrom(const std::string& command) {
  std::FILE* output = _popen(('"' + command + '"').c_str(), "r");
  std::string text;
  for (std::array<char, 1000> line{}; std::fgets(line.data(), line.size(), output) != nullptr;) {
    std::string_view written = line.data();
    if (written.ends_with('\n')) written.remove_suffix(1);
    text += office::Decode(written, office::CodePage::kOem) + '\n';
  }
  _pclose(output);
  return text;
}

inline const std::string kClasses = "Software\\Classes\\";

// The text of a key; "none" when there is no such key.
inline std::string TextOf(HKEY users, const std::string& key) {
  std::array<char, MAX_PATH> text{};
  LONG size = text.size();
  const LSTATUS status = RegQueryValueA(users, (kClasses + key).c_str(), text.data(), &size);
  return status == ERROR_FILE_NOT_FOUND ? "none" : text.data();
}

inline constexpr auto kCreate = "Set library = CreateObject(\"qlx99.Library\")\n";

// For calls that fail: in JScript, which tells automation's own numbers.
inline constexpr auto kAttempt = R"(
var library = new ActiveXObject("qlx99.Library");
function attempt(call) {
  try {
    WScript.Echo(eval("library." + call));
  } catch (error) {
    WScript.Echo((error.number >>> 0).toString(16) + " " + error.description);
  }
}
)";

class AutomationServer : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    office = std::make_unique<TemporaryFolder>();
    Qlx("office|create|" + office->Text());
    Qlx("setup|" + office->Text());
  }
  static void TearDownTestSuite() {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Quorvane\\Stelvora");
    UnloadRecordManagers();
    office.reset();
  }

  void SetUp() override { RunServer("/regserver"); }

  void TearDown() override {
    EXPECT_TRUE(Eventually([] { return CountServers() == 0; }));
    RunServer("/unregserver");
    for (HKEY users : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
      for (const std::string& name : kClassKeys) EXPECT_EQ(TextOf(users, name), "none");
    }
  }

  static std::string RunServer(const std::string& option,
                               const fs::path& folder = ProductFolder()) {
    return TextFrom('"' + (folder / "qlx99server.exe").string() + "\" " + option);
  }

  // A script as a macro author writes it, in Windows' code page.
  std::string Written(const std::string& script, const std::string& type) {
    const std::string file =
        temporary_.Text() + "\\script" + std::to_string(++scripts_) + '.' + type;
    testkit::WriteAll(file, (type == "vbs" ? kCreate : kAttempt) + office::Encode(script));
    return file;
  }

  // What it writes.
  std::string Run(const std::string& script, const std::string& type = "vbs") {
    return TextFrom("cscript //nologo \"" + Written(script, type) + '"');
  }

  // Its process.
  HANDLE Start(const std::string& script) {
    return reinterpret_cast<HANDLE>(_spawnlp(_P_NOWAIT, "cscript", "cscript", "//nologo",
                                             Written(script, "vbs").c_str(), nullptr));
  }

  static inline std::unique_ptr<TemporaryFolder> office;

 private:
  TemporaryFolder temporary_;
  int scripts_ = 0;
};

}  // namespace qlx99::tests
