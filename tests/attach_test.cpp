// What the library decides when it is attached.
#include "frame/attach.h"
#include "frame/login_window.h"
#include "support/export_test.h"

// The library's, which no header declares everywhere.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

namespace qlx99::tests {
namespace {

constexpr std::int32_t kLocal = -1;     // what GetAdressTyp answers by itself
constexpr std::int32_t kDelegated = 0;  // what it answers while no login can be confirmed

using AttachTest = ExportTest;

TEST_F(AttachTest, ProgramNameDecidesTheInstallationKindUntilTheLibraryIsLoadedAgain) {
  EXPECT_EQ(library->GetAdressTyp("1", "2"), kLocal) << "not configured";
  const std::pair<std::string, std::int32_t> cases[] = {
      {{"TELQ32\0", 7}, kDelegated},
      {{"c:\\apps\\xTeLq32.exe\0", 20}, kDelegated},
      {"c:\\apps\\telq32", kDelegated},  // unterminated
      {std::string(300, 'x') + "telq32", kDelegated},
      {std::string(300, 'x'), kLocal},
      {{"telq3\0", 6}, kLocal},
      {{"tel q32\0", 8}, kLocal},
      {{"x\0telq32\0", 9}, kLocal},  // behind the text's end
      {{"\0", 1}, kLocal},
      {"", kLocal},
  };
  std::int32_t before = kLocal;
  for (const auto& [storedBytes, kind] : cases) {
    office.IsConfiguredWithBytes("ProgramName", storedBytes);
    EXPECT_EQ(library->GetAdressTyp("1", "2"), before) << storedBytes;
    library.Free();
    EXPECT_EQ(library->GetAdressTyp("1", "2"), kind) << storedBytes;
    before = kind;
  }
}

// By the library that is built into this program.
TEST(DetachTest, TakesTheWindowsClassBackUnlessTheProcessEnds) {
  HINSTANCE module = GetModuleHandleA(nullptr);
  WNDCLASSA its{};
  AttachLibrary(module);
  CreateLoginWindow();
  EXPECT_NE(FindWindowA("KrvQLX", nullptr), nullptr);
  DllMain(module, DLL_PROCESS_DETACH, &its);
  EXPECT_EQ(FindWindowA("KrvQLX", nullptr), nullptr);
  EXPECT_TRUE(GetClassInfoA(module, "KrvQLX", &its)) << "nobody asks for that at the process's end";
  DllMain(module, DLL_PROCESS_DETACH, nullptr);
  EXPECT_FALSE(GetClassInfoA(module, "KrvQLX", &its)) << "even without a window";
}

}  // namespace
}  // namespace qlx99::tests
