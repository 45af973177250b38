// The hidden window that hears of the login, and what becomes of the library when it goes.
#include <thread>

#include "support/office_programs.h"

namespace qlx99::tests {
namespace {

// The word processor's main window, which owns the library's hidden one.
class LoginWindowTest : public DelegatedTest {
 protected:
  LoginWindowTest() {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = DefWindowProcA;
    windowClass.hInstance = program_;
    windowClass.lpszClassName = kHost;
    RegisterClassA(&windowClass);
  }
  ~LoginWindowTest() override { UnregisterClassA(kHost, program_); }

  HWND OpenHost() {
    return CreateWindowExA(0, kHost, "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, program_, nullptr);
  }

  // The hidden window of a library that has seen the login.
  HWND WindowAfterLogin() {
    BothProgramsRun();
    LoginIsThere();
    EXPECT_EQ(library->UserInit(), kDelegateAnswer);
    return FindWindowA("KrvQLX", "KrvQLX");
  }

 private:
  static constexpr auto kHost = "OpusApp";
  HINSTANCE program_ = GetModuleHandleA(nullptr);
};

TEST_F(LoginWindowTest, RefusesTheCallWhenTheHostIsClosedWhileTheLoginIsAwaited) {
  for (const bool loggedIn : {false, true}) {
    const auto hostCloses = [host = OpenHost()] { DestroyWindow(host); };
    programs.Start(kLoginServer);
    programs.WillHear(loggedIn ? Talk(LoggedIn(1), Product(8), LoginEnded(0).Meanwhile(hostCloses))
                               : Talk(LoggedIn(0), Started().Meanwhile(hostCloses)));
    EXPECT_EQ(library->UserInit(), 0);
    programs.End();
  }
}

TEST_F(LoginWindowTest, IsHiddenAndMadeAgainWhenItsOwnerHasGone) {
  HWND host = OpenHost();
  HWND window = WindowAfterLogin();
  HINSTANCE module = library->module;
  ASSERT_NE(window, nullptr);
  WNDCLASSA its{};
  ASSERT_TRUE(GetClassInfoA(module, "KrvQLX", &its));
  EXPECT_EQ(its.lpfnWndProc, library->MainWndProc);

  DestroyWindow(host);
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
  HWND window = WindowAfterLogin();
  std::thread([&] { library.Free(); }).join();
  EXPECT_EQ(SendMessageA(window, WM_COMMAND, 0, 0), 0);
  programs.End();  // which dispatches this thread's messages
  EXPECT_FALSE(IsWindow(window));
}

}  // namespace
}  // namespace qlx99::tests
