// A host that is told to end while the library asks its user something.
#include <chrono>
#include <thread>

#include "addresses/bank_connection_file.h"
#include "resources/resource.h"
#include "support/example_office.h"
#include "users/user_file.h"

namespace qlx99::tests {
namespace {

class HeldQuitTest : public ExampleOfficeTest {
 protected:
  void TearDown() override {
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT) {
    }
    EXPECT_EQ(message.message, WM_QUIT);
    EXPECT_EQ(message.wParam, 7U);
    ExampleOfficeTest::TearDown();
  }
};

TEST_F(HeldQuitTest, EndsNoDialogOfTheLibrary) {
  office.Has<BankConnectionRecord>("number: 201, addressNumber: 4711, bankName: Volksbank");
  for (const bool wasTold : {false, true}) {  // by the call before
    user.Does([&](OpenDialog& dialog) {
      if (!wasTold) user.LetsTheHostCall([] { PostQuitMessage(7); });
      std::this_thread::sleep_for(std::chrono::milliseconds(50));  // time to be ended
      EXPECT_TRUE(dialog.Select(IDC_BANK_LINES, 1));
      EXPECT_TRUE(dialog.Press(IDC_TAKE));
    });
    EXPECT_THAT(OutcomeOf([&](char* b) { return library->ALesenDLL("", "4711", b, ""); }),
                testing::HasSubstr("Volksbank"));
  }
}

TEST_F(HeldQuitTest, EndsNoMessageOfTheLibrary) {
  office.Lacks<UserRecord>();
  PostQuitMessage(7);
  EXPECT_EQ(library->UserInit(), 0);
  EXPECT_THAT(user.Messages(), testing::ElementsAre(CannotOpen("ZTUSER.KRV")));
}

}  // namespace
}  // namespace qlx99::tests
