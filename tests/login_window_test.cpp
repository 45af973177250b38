// The hidden window that hears of the login, and what becomes of the library when it goes.
#include <thread>

#include "support/delegated_test.h"

namespace qlx99::tests {
namespace {

// The word processor's main window, which owns the library's hidden one.
class HostWindow {
 public:
  HostWindow() {
    windowClass_.lpfnWndProc = DefWindowProcA;
    windowClass_.hInstance = GetModuleHandleA(nullptr);
    windowClass_.lpszClassName = "OpusApp";
    RegisterClassA(&windowClass_);
    window_ = CreateWindowExA(0, "OpusApp", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                              windowClass_.hInstance, nullptr);
  }
  ~HostWindow() {
    Close();
    UnregisterClassA("OpusApp", windowClass_.hInstance);
  }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;

  void Close() { DestroyWindow(window_); }

 private:
  WNDCLASSA windowClass_{};
  HWND window_ = nullptr;
};

using LoginWindowTest = DelegatedTest;

TEST_F(LoginWindowTest, RefusesTheCallWhenTheHostIsClosedWhileTheLoginIsAwaited) {
  for (const bool loggedIn : {false, true}) {
    HostWindow host;
    const auto hostCloses = [&] { host.Close(); };
    programs.Start(kLoginServer);
    programs.WillHear(loggedIn ? Talk(LoggedIn(1), Product(8), LoginEnded(0).Meanwhile(hostCloses))
                               : Talk(LoggedIn(0), Started().Meanwhile(hostCloses)));
    EXPECT_EQ(library->UserInit(), 0);
    programs.End();
  }
}

TEST_F(LoginWindowTest, IsHiddenAndMadeAgainWhenItsOwnerHasGone) {
  HostWindow host;
  BothProgramsRun();
  LoginIsThere();
  HINSTANCE module = library->module;
  EXPECT_EQ(library->UserInit(), kDelegateAnswer);

  HWND window = FindWindowA("KrvQLX", "KrvQLX");
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)),
            WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_CLIPSIBLINGS);
  WNDCLASSA its{};
  ASSERT_TRUE(GetClassInfoA(module, "KrvQLX", &its));
  EXPECT_EQ(its.style, CS_HREDRAW);
  EXPECT_EQ(its.lpfnWndProc, library->MainWndProc);
  EXPECT_EQ(its.hbrBackground, GetStockObject(WHITE_BRUSH));
  EXPECT_EQ(its.hIcon, nullptr);
  EXPECT_EQ(its.hCursor, nullptr);
  EXPECT_EQ(its.lpszMenuName, nullptr);
  EXPECT_EQ(its.cbClsExtra + its.cbWndExtra, 0);

  host.Close();
  EXPECT_EQ(FindWindowA("KrvQLX", nullptr), nullptr);
  LoginIsThere();
  EXPECT_EQ(library->UserInit(), kDelegateAnswer);
  EXPECT_NE(FindWindowA("KrvQLX", nullptr), nullptr);
  library.Free();
  EXPECT_EQ(FindWindowA("KrvQLX", nullptr), nullptr);
  EXPECT_FALSE(GetClassInfoA(module, "KrvQLX", &its));
  EXPECT_EQ(GetModuleHandleA("qlx02.dll"), nullptr);
}

TEST_F(LoginWindowTest, KeepsNoProcedureThatIsGoneWhenAnotherThreadFreesTheLibrary) {
  BothProgramsRun();
  LoginIsThere();
  library->UserInit();
  HWND window = FindWindowA("KrvQLX", nullptr);
  std::thread([&] { library.Free(); }).join();
  EXPECT_EQ(SendMessageA(window, WM_COMMAND, 0, 0), 0);
  programs.End();  // which dispatches this thread's messages
  EXPECT_FALSE(IsWindow(window));
}

TEST_F(LoginWindowTest, KeepsOnlyThreeMessagesToItself) {
  BothProgramsRun();
  LoginIsThere();
  library->UserInit();
  HWND window = FindWindowA("KrvQLX", nullptr);
  const UINT mask = RegisterWindowMessageA("WM_KRV_LOGINMASK");
  for (const UINT message : std::initializer_list<UINT>{mask, WM_CREATE, WM_DESTROY}) {
    EXPECT_EQ(library->MainWndProc(window, message, 1, 0), 0);
  }
  library->MainWndProc(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("Titel"));
  EXPECT_EQ(FindWindowA("KrvQLX", "Titel"), window);
}

}  // namespace
}  // namespace qlx99::tests
