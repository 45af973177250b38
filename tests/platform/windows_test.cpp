#include <gmock/gmock.h>

#include <future>
#include <string>
#include <thread>
#include <vector>

#include "platform/windows_api.h"
#include "support/text.h"
#include "support/user.h"

namespace {

using qlx99::tests::Wide;
using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::Le;

const UINT kFirst = RegisterWindowMessageA("qlx99 first test message");
const UINT kSecond = RegisterWindowMessageA("qlx99 second test message");

// What the windows of the class have heard, of the messages that the tests are about.
std::vector<UINT> heard;

// Answers `kFirst` with twice its word parameter, asking the window in its long parameter first.
LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wordParam, LPARAM longParam) {
  if (message == kFirst || message == kSecond || message == WM_CREATE || message == WM_DESTROY) {
    heard.push_back(message);
  }
  if (message == kFirst) {
    HWND other = reinterpret_cast<HWND>(longParam);
    return SendMessageA(other, kSecond, 0, 0) + 2 * static_cast<LRESULT>(wordParam);
  }
  return message == kSecond ? 1000 : DefWindowProcA(window, message, wordParam, longParam);
}

class TestClass {
 public:
  static constexpr auto kName = "qlx99TestClass";

  TestClass() { EXPECT_NE(Register(), 0); }
  ~TestClass() { EXPECT_TRUE(UnregisterClassA(kName, module_)); }
  TestClass(const TestClass&) = delete;
  TestClass& operator=(const TestClass&) = delete;

  ATOM Register() const {
    WNDCLASSA its{};
    its.style = CS_HREDRAW;
    its.lpfnWndProc = Procedure;
    its.hInstance = module_;
    its.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    its.lpszClassName = kName;
    return RegisterClassA(&its);
  }

  HWND Create(const char* title, HWND owner = nullptr) const {
    return CreateWindowExA(0, kName, title, WS_POPUP | WS_CAPTION, CW_USEDEFAULT, CW_USEDEFAULT,
                           700, 350, owner, nullptr, module_, nullptr);
  }

  HINSTANCE Module() const { return module_; }

 private:
  HINSTANCE module_ = GetModuleHandleA(nullptr);
};

void ExpectFailure(bool succeeded, DWORD error) {
  EXPECT_FALSE(succeeded);
  EXPECT_EQ(GetLastError(), error);
}

// Dispatches what there is and returns the exit code of a WM_QUIT, or -1.
int Dispatch() {
  MSG message{};
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) return static_cast<int>(message.wParam);
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return -1;
}

LRESULT CALLBACK HideMessage(int code, WPARAM removal, LPARAM longParam) {
  EXPECT_EQ(code, HC_ACTION);
  EXPECT_EQ(removal, PM_REMOVE);
  reinterpret_cast<MSG*>(longParam)->message = WM_NULL;
  return CallNextHookEx(nullptr, code, removal, longParam);
}

TEST(WindowMessage, HasOneNumberForOneNameWhateverItsCase) {
  EXPECT_THAT(kFirst, AllOf(Ge(0xC000U), Le(0xFFFFU)));
  EXPECT_EQ(RegisterWindowMessageA("QLX99 First Test Message"), kFirst);
  EXPECT_NE(kSecond, kFirst);
  EXPECT_EQ(RegisterWindowMessageA(""), 0U);
}

TEST(WindowClass, IsRegisteredOnceAndStaysWhileItHasWindows) {
  const TestClass testClass;
  ExpectFailure(testClass.Register() != 0, ERROR_CLASS_ALREADY_EXISTS);
  WNDCLASSA its{};
  EXPECT_TRUE(GetClassInfoA(testClass.Module(), "QLX99testCLASS", &its));
  EXPECT_EQ(its.style, CS_HREDRAW);
  EXPECT_EQ(its.lpfnWndProc, Procedure);
  EXPECT_EQ(its.hbrBackground, GetStockObject(WHITE_BRUSH));
  HWND window = testClass.Create("");
  ExpectFailure(UnregisterClassA(TestClass::kName, testClass.Module()), ERROR_CLASS_HAS_WINDOWS);
  EXPECT_TRUE(DestroyWindow(window));

  ExpectFailure(GetClassInfoA(testClass.Module(), "qlx99 other", &its), ERROR_CLASS_DOES_NOT_EXIST);
  ExpectFailure(UnregisterClassA("qlx99 other", testClass.Module()), ERROR_CLASS_DOES_NOT_EXIST);
  EXPECT_EQ(CreateWindowExA(0, "qlx99 other", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                            testClass.Module(), nullptr),
            nullptr);
}

TEST(Window, IsFoundByClassAndTitleUntilItIsDestroyedWithThoseThatItOwns) {
  const TestClass testClass;
  heard.clear();
  HWND window = testClass.Create("Fenster");
  EXPECT_TRUE(IsWindow(window));
  EXPECT_EQ(FindWindowA("QLX99testCLASS", nullptr), window);
  EXPECT_EQ(FindWindowA(TestClass::kName, "Fenster"), window);
  EXPECT_EQ(FindWindowA(TestClass::kName, "Titel"), nullptr);
  EXPECT_TRUE(SendMessageA(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("Titel")));
  EXPECT_EQ(FindWindowA(TestClass::kName, "Titel"), window);
  EXPECT_TRUE(SetWindowTextW(window, Wide("Fenster").c_str()));
  EXPECT_EQ(FindWindowA(TestClass::kName, "Titel"), nullptr);

  constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_CLIPSIBLINGS;
  EXPECT_EQ(static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)), kStyle);
  EXPECT_FALSE(ShowWindow(window, SW_SHOW));
  EXPECT_EQ(static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)), kStyle | WS_VISIBLE);
  EXPECT_TRUE(ShowWindow(window, SW_HIDE));
  EXPECT_EQ(static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)), kStyle);

  HWND owned = testClass.Create("", window);
  SendMessageA(window, WM_CLOSE, 0, 0);
  EXPECT_FALSE(IsWindow(window) || IsWindow(owned));
  EXPECT_EQ(FindWindowA(TestClass::kName, nullptr), nullptr);
  EXPECT_THAT(heard, ElementsAre(WM_CREATE, WM_CREATE, WM_DESTROY, WM_DESTROY));
}

TEST(Window, ThatDoesNotExistTakesNothing) {
  const TestClass testClass;
  HWND window = testClass.Create("");
  DestroyWindow(window);
  for (HWND none : {static_cast<HWND>(nullptr), window}) {
    EXPECT_FALSE(IsWindow(none));
    EXPECT_FALSE(DestroyWindow(none));
    ExpectFailure(SetWindowTextW(none, Wide("Titel").c_str()), ERROR_INVALID_WINDOW_HANDLE);
    ExpectFailure(SendMessageA(none, kFirst, 1, 0) != 0, ERROR_INVALID_WINDOW_HANDLE);
    ExpectFailure(ShowWindow(none, SW_HIDE), ERROR_INVALID_WINDOW_HANDLE);
    EXPECT_EQ(SetWindowLongPtrA(none, GWLP_WNDPROC, 1), 0);
  }
  ExpectFailure(PostMessageA(window, kFirst, 1, 0), ERROR_INVALID_WINDOW_HANDLE);
  EXPECT_TRUE(PostMessageA(nullptr, kFirst, 1, 0));  // to the thread itself
  EXPECT_EQ(Dispatch(), -1);
}

TEST(Message, IsAnsweredAtOnceWhenSentAndInItsTurnWhenPosted) {
  const TestClass testClass;
  HWND window = testClass.Create("");
  heard.clear();
  EXPECT_TRUE(PostMessageA(window, kFirst, 1, 0));
  PostQuitMessage(7);
  EXPECT_TRUE(PostMessageA(window, kSecond, 1, 0));
  EXPECT_EQ(SendMessageA(window, kSecond, 0, 0), 1000);
  EXPECT_EQ(MsgWaitForMultipleObjects(0, nullptr, FALSE, 10'000, QS_ALLINPUT), WAIT_OBJECT_0);
  EXPECT_EQ(Dispatch(), 7);
  EXPECT_EQ(Dispatch(), -1);
  EXPECT_EQ(MsgWaitForMultipleObjects(0, nullptr, FALSE, 1, QS_ALLINPUT), WAIT_TIMEOUT);
  EXPECT_THAT(heard, ElementsAre(kSecond, kFirst, kSecond));
  DestroyWindow(window);
}

TEST(Message, IsSeenAndChangedByAHookBeforeItIsTaken) {
  HHOOK hook = SetWindowsHookExA(WH_GETMESSAGE, HideMessage, nullptr, GetCurrentThreadId());
  EXPECT_NE(hook, nullptr);
  PostQuitMessage(7);
  MSG message{};
  EXPECT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, WM_NULL);
  EXPECT_TRUE(UnhookWindowsHookEx(hook));
  ExpectFailure(UnhookWindowsHookEx(hook), ERROR_INVALID_HOOK_HANDLE);
  PostQuitMessage(8);
  EXPECT_EQ(Dispatch(), 8);
}

TEST(Message, ToQuitEndsMessageBoxesAndStaysInTheQueue) {
  qlx99::tests::User user;
  PostQuitMessage(7);
  MessageBoxW(nullptr, Wide("?").c_str(), Wide("?").c_str(), MB_OK);
  EXPECT_EQ(Dispatch(), 7);
  user.Messages();  // a quick eye may have seen it
}

TEST(Message, OfOneThreadReachesTheWindowsOfAnother) {
  const TestClass testClass;
  HWND own = testClass.Create("");
  std::promise<HWND> created;
  HWND second = nullptr;  // of the other thread, too; still there when the first is closed
  std::thread other([&] {
    second = testClass.Create("");
    created.set_value(testClass.Create(""));
    while (Dispatch() != 7) MsgWaitForMultipleObjects(0, nullptr, FALSE, 10'000, QS_ALLINPUT);
    DestroyWindow(second);
  });
  HWND foreign = created.get_future().get();
  // While this thread waits for the answer, it is asked itself.
  EXPECT_EQ(SendMessageA(foreign, kFirst, 21, reinterpret_cast<LPARAM>(own)), 1042);
  ExpectFailure(DestroyWindow(foreign), ERROR_ACCESS_DENIED);
  const auto old =
      SetWindowLongPtrA(foreign, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(DefWindowProcA));
  EXPECT_EQ(old, reinterpret_cast<LONG_PTR>(Procedure));
  EXPECT_EQ(SendMessageA(foreign, kFirst, 21, 0), 0);
  EXPECT_TRUE(PostMessageA(foreign, WM_CLOSE, 0, 0));
  EXPECT_TRUE(PostMessageA(second, WM_QUIT, 7, 0));
  other.join();
  EXPECT_FALSE(IsWindow(foreign));
  DestroyWindow(own);
}

}  // namespace
