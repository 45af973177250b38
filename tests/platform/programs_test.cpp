#include <gmock/gmock.h>

#include <chrono>
#include <thread>

#include "platform/windows_api.h"
#include "support/world.h"

namespace {

TEST(Program, IsReadyForMessagesOnceItHasBeenStarted) {
  const std::string folder = qlx99::tests::world::ProgramFolder().string();
  EXPECT_EQ(WinExec((folder + "\\missing.exe").c_str(), SW_SHOW), ERROR_FILE_NOT_FOUND);
  for (const std::string& command : {folder + "\\telq32.exe", "\"" + folder + "/telq32.exe\""}) {
    EXPECT_GT(WinExec(command.c_str(), SW_SHOW), 31U);
    HWND window = FindWindowA("TELQBASE", nullptr);
    EXPECT_TRUE(PostMessageA(window, WM_CLOSE, 0, 0));
    for (int i = 0; i < 1000 && IsWindow(window); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_FALSE(IsWindow(window));
  }
}

}  // namespace
