// The dialogs of the automation server, and what becomes of them without their client.
#include <atomic>
#include <cstring>
#include <thread>

#include "automation/server_test.h"
#include "frame/login_window.h"
#include "frame/registry.h"
#include "resources/resource.h"
#include "support/text.h"
// <windows.h> first: these build on it.
#include <oleauto.h>
#include <process.h>

namespace qlx99::tests {
namespace {

using AutomationDialogs = AutomationServer;

HWND PartyDialog(const wchar_t* title = L"Gegner auswählen") {
  HWND dialog = FindWindowW(L"#32770", title);
  return IsWindowVisible(dialog) ? dialog : nullptr;
}

// Each has a server of its own: while the dialog of one client is open, another one works.
TEST_F(AutomationDialogs, EndWithTheirClient) {
  HANDLE other = Start("library.BLesenDLL \"  \", \"23001124\", \"\", \"\", record");
  EXPECT_TRUE(Eventually([] { return PartyDialog(L"Adressat auswählen") != nullptr; }));
  HANDLE choosing = Start("library.BLesenDLL \"G \", \"23001124\", \"\", \"\", record");
  EXPECT_TRUE(Eventually([] { return PartyDialog() != nullptr; }));
  EXPECT_EQ(Run("WScript.Echo library.UserInit"), "5\n");
  EXPECT_TRUE(Eventually([] { return CountServers() == 2; }));
  TerminateProcess(other, 1);
  EXPECT_TRUE(Eventually([] { return CountServers() == 1; }));
  EXPECT_NE(PartyDialog(), nullptr);
  TerminateProcess(choosing, 1);
  EXPECT_TRUE(Eventually([] { return CountServers() == 0; }));
}

// In the delegated kind, where nobody has logged in.
TEST_F(AutomationDialogs, WaitForNoLoginWithoutTheirClient) {
  const auto configure = [](const RegistryValue& value, const char* text) {
    RegSetKeyValueA(HKEY_LOCAL_MACHINE, value.keyPath, value.name, REG_SZ, text,
                    static_cast<DWORD>(std::strlen(text)) + 1);
  };
  configure(kProgramName, "telq32.exe");
  configure(kMappingRoot, "none");
  HANDLE waiting = Start("library.UserInit");
  EXPECT_TRUE(Eventually([] { return FindWindowA(kLoginWindow, nullptr) != nullptr; }));
  TerminateProcess(waiting, 1);
  EXPECT_TRUE(Eventually([] { return CountServers() == 0; }));
  configure(kProgramName, "");
  RegDeleteKeyValueA(HKEY_LOCAL_MACHINE, kMappingRoot.keyPath, kMappingRoot.name);
}

// The party that the user chooses for a client which, unlike a script, has a window, and null texts
// where it says nothing.
std::string ChosenOpponent() {
  CLSID id{};
  IDispatch* library = nullptr;
  CoInitialize(nullptr);
  CLSIDFromProgID(L"qlx99.Library", &id);
  EXPECT_EQ(CoCreateInstance(id, nullptr, CLSCTX_LOCAL_SERVER, IID_IDispatch,
                             reinterpret_cast<void**>(&library)),
            S_OK);
  std::wstring name = L"BLesenDLL";
  LPOLESTR names = name.data();
  DISPID method = 0;
  LPOLESTR none = nullptr;
  EXPECT_EQ(library->GetIDsOfNames(IID_NULL, &none, 1, 0, &method), DISP_E_UNKNOWNNAME);
  library->GetIDsOfNames(IID_NULL, &names, 1, 0, &method);
  BSTR record = nullptr;
  std::array<VARIANT, 5> arguments{};  // the last one first
  for (VARIANT& one : arguments) one.vt = VT_BSTR;
  arguments[0].vt = VT_BYREF | VT_BSTR;
  arguments[0].pbstrVal = &record;
  arguments[3].bstrVal = SysAllocString(L"23001124");
  arguments[4].bstrVal = SysAllocString(L"G ");
  DISPPARAMS parameters{arguments.data(), nullptr, arguments.size(), 0};
  EXPECT_EQ(
      library->Invoke(method, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
      S_OK);
  for (VARIANT& one : arguments) VariantClear(&one);
  const std::u16string text(record, record + SysStringLen(record));
  SysFreeString(record);
  library->Release();
  CoUninitialize();
  return Utf8(text);
}

HWND ClientWindow() {
  return CreateWindowA("STATIC", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 1000, 700, nullptr,
                       nullptr, nullptr, nullptr);
}

TEST_F(AutomationDialogs, StandInFrontOfTheClientInWhichTheUserIs) {
  HWND window = ClientWindow();
  SetForegroundWindow(window);
  std::thread person([] {
    EXPECT_TRUE(Eventually([] { return PartyDialog() != nullptr; }));
    HWND dialog = PartyDialog();
    EXPECT_TRUE(Eventually([&] { return GetForegroundWindow() == dialog; }));
    EXPECT_TRUE(
        Eventually([&] { return (GetWindowLongA(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; }));
    PostMessageA(dialog, WM_COMMAND, IDC_TAKE, 0);
  });
  EXPECT_EQ(ChosenOpponent(), "4802|0 |0|");
  person.join();
  EXPECT_EQ(GetForegroundWindow(), window);
  EXPECT_TRUE(IsWindowEnabled(window));
  DestroyWindow(window);
}

// As of one whose window's thread waits for another, which makes the call. Wine lets every program
// put windows in front, so the client takes its place back.
TEST_F(AutomationDialogs, WaitForNoClientThatAnswersNoMessages) {
  std::atomic<bool> returned = false;
  std::thread busy([&] {
    HWND window = ClientWindow();
    EXPECT_TRUE(Eventually([&] {
      SetForegroundWindow(window);
      return returned.load();
    }));
    DestroyWindow(window);
  });
  std::thread person([] {
    EXPECT_TRUE(Eventually([] { return PartyDialog() != nullptr; }));
    Sleep(500);  // until the dialog has tried to take the keyboard
    PostMessageA(PartyDialog(), WM_COMMAND, IDC_TAKE, 0);
  });
  EXPECT_EQ(ChosenOpponent(), "4802|0 |0|");
  returned = true;
  person.join();
  busy.join();
}

}  // namespace
}  // namespace qlx99::tests
