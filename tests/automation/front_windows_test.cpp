// Where the automation server's dialogs stand, beside a client with a window.
#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <thread>

#include "automation/late_bound_client.h"
#include "automation/machine_office.h"
#include "automation/seen_from_outside.h"
#include "platform/windows_api.h"
#include "resources/resource.h"
#include "support/started_program.h"
#include "testkit/embedded_manager.h"
#include "testkit/temporary_folder.h"

namespace qlx99::tests {
namespace {

class AutomationFront : public testing::Test {
 protected:
  AutomationFront() { RunServer("/regserver"); }
  ~AutomationFront() override {
    EXPECT_TRUE(Eventually([] { return CountServers() == 0; }));
    RunServer("/unregserver");
  }

 private:
  void RunServer(const std::string& option) {
    const auto server = testkit::ProductFolder() / "qlx99server.exe";
    StartedProgram('"' + server.string() + "\" " + option, temporary_.Path() / "said").WholeText();
  }

  testkit::TemporaryFolder temporary_;
  MachineOffice office_;
};

TEST_F(AutomationFront, ShowsItsDialogsInFrontOfTheClientInWhichTheUserIs) {
  HWND window = CreateWindowA("STATIC", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 1000, 700,
                              nullptr, nullptr, nullptr, nullptr);
  SetForegroundWindow(window);
  std::thread person([] {
    EXPECT_TRUE(Eventually([] { return PartyDialog() != nullptr; }));
    HWND dialog = PartyDialog();
    EXPECT_TRUE(Eventually([&] { return GetForegroundWindow() == dialog; }));
    EXPECT_TRUE(
        Eventually([&] { return (GetWindowLongA(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; }));
    PostMessageA(dialog, WM_COMMAND, IDC_TAKE, 0);
  });
  EXPECT_EQ(LateBoundClient().Call(L"BLesenDLL",
                                   {L"G ", L"23001124", L"", L"", LateBoundClient::kRecord}),
            "4802|0 |0|");
  person.join();
  EXPECT_EQ(GetForegroundWindow(), window);
  EXPECT_TRUE(IsWindowEnabled(window));
  DestroyWindow(window);
}

// As one whose window's thread waits for another, which makes the call. Wine lets every program put
// windows in front, so the client takes its place back.
TEST_F(AutomationFront, WaitsForNoClientThatAnswersNoMessages) {
  std::atomic<bool> returned = false;
  std::thread busy([&] {
    HWND window = CreateWindowA("STATIC", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 1000, 700,
                                nullptr, nullptr, nullptr, nullptr);
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
  EXPECT_EQ(LateBoundClient().Call(L"BLesenDLL",
                                   {L"G ", L"23001124", L"", L"", LateBoundClient::kRecord}),
            "4802|0 |0|");
  returned = true;
  person.join();
  busy.join();
}

}  // namespace
}  // namespace qlx99::tests
