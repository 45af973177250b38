// A host that is told to end while the library asks its user something.
#include <chrono>
#include <thread>

#include "addresses/bank_connection_file.h"
#include "resources/resource.h"
#include "support/example_office.h"
#include "users/user_file.h"

namespace qlx99::tests {
namespace {

constexpr auto kName = "qlx99 test host";

LRESULT CALLBACK EndWithWindow(HWND window, UINT message, WPARAM wordParam, LPARAM longParam) {
  if (message == WM_DESTROY) PostQuitMessage(7);
  return DefWindowProcA(window, message, wordParam, longParam);
}

class HeldQuitTest : public ExampleOfficeTest {
 protected:
  HeldQuitTest() {
    windowClass_.lpfnWndProc = EndWithWindow;
    windowClass_.hInstance = GetModuleHandleA(nullptr);
    windowClass_.lpszClassName = kName;
    RegisterClassA(&windowClass_);
  }
  ~HeldQuitTest() override { UnregisterClassA(kName, windowClass_.hInstance); }

  HWND OpenHost() {
    return CreateWindowExA(0, kName, "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                           windowClass_.hInstance, nullptr);
  }

  static void ExpectQuit() {
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT) {
    }
    EXPECT_EQ(message.message, WM_QUIT);
    EXPECT_EQ(message.wParam, 7U);
  }

 private:
  WNDCLASSA windowClass_{};
};

TEST_F(HeldQuitTest, EndsNoDialogOfTheLibrary) {
  office.Has<BankConnectionRecord>("number: 201, addressNumber: 4711, bankName: Volksbank");
  for (const bool alreadyClosed : {true, false}) {
    HWND host = OpenHost();
    if (alreadyClosed) DestroyWindow(host);
    user.Does([host](OpenDialog& dialog) {
      SendMessageA(host, WM_CLOSE, 0, 0);
      std::this_thread::sleep_for(std::chrono::milliseconds(50));  // time to be ended
      EXPECT_TRUE(dialog.Select(IDC_BANK_LINES, 1));
      EXPECT_TRUE(dialog.Press(IDC_TAKE));
    });
    EXPECT_THAT(OutcomeOf([&](char* b) { return library->ALesenDLL("", "4711", b, ""); }),
                testing::HasSubstr("Volksbank"));
    ExpectQuit();
  }
}

TEST_F(HeldQuitTest, EndsNoMessageOfTheLibrary) {
  office.Lacks<UserRecord>();
  DestroyWindow(OpenHost());
  EXPECT_EQ(library->UserInit(), 0);
  EXPECT_THAT(user.Messages(), testing::ElementsAre(CannotOpen("ZTUSER.KRV")));
  ExpectQuit();
}

}  // namespace
}  // namespace qlx99::tests
