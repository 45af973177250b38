// A host whose manifest makes UTF-8 its ANSI code page: this program once more, under another name.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <fstream>

#include "platform/windows_api.h"
#include "testkit/process.h"

namespace qlx99::tests {
namespace {

namespace fs = std::filesystem;

constexpr auto kManifest = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly manifestVersion="1.0" xmlns="urn:schemas-microsoft-com:asm.v1">
  <assemblyIdentity type="win32" name="qlx99.tests" version="1.0.0.0"/>
  <application>
    <windowsSettings>
      <activeCodePage xmlns="http://schemas.microsoft.com/SMI/2019/WindowsSettings">UTF-8</activeCodePage>
    </windowsSettings>
  </application>
</assembly>
)";

constexpr auto kProgram = "qlx99_tests_utf8";  // and the number of the process that made it
constexpr UINT kGermanAnsi = 1252;
constexpr UINT kGermanOem = 850;

// What shows umlauts, asks for a choice among them, or converts them.
constexpr auto kOptions =
    "--gtest_brief=1 --gtest_filter=HostOfUtf8.*:CaseRecordTest.Keeps*:PartySelectionTest.*:"
    "AddressReadingTest.User*:EveryExportTest.SaysWhich*";

TEST(HostOfUtf8, HasThatCodePageAndNoOtherHas) {
  std::array<char, MAX_PATH> program{};
  GetModuleFileNameA(nullptr, program.data(), program.size());
  const bool isThisOne = std::string_view(program.data()).find(kProgram) != std::string_view::npos;
  EXPECT_EQ(GetACP(), isThisOne ? CP_UTF8 : kGermanAnsi);
  EXPECT_EQ(GetOEMCP(), isThisOne ? CP_UTF8 : kGermanOem);
}

TEST(LibraryInAHostOfUtf8, ShowsAndDeliversTheSame) {
  const fs::path program =
      testkit::ProgramFolder() / (kProgram + std::to_string(GetCurrentProcessId()) + ".exe");
  const fs::path manifest = program.string() + ".manifest";
  fs::copy_file(testkit::ProgramFolder() / "qlx99_tests.exe", program);
  std::ofstream(manifest) << kManifest;
  // The outer quotation marks are the command interpreter's.
  EXPECT_EQ(std::system(("\"\"" + program.string() + "\" " + kOptions + '"').c_str()), 0);
  fs::remove(program);
  fs::remove(manifest);
}

}  // namespace
}  // namespace qlx99::tests
