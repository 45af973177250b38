// What the tool does on a window station that nobody sees, as a service or a task runs it.
#include <gmock/gmock.h>

#include "office/sample_office.h"
#include "platform/windows_api.h"

namespace {

class QlxWithoutAScreen : public SampleOffice {};

TEST_F(QlxWithoutAScreen, WritesMessagesInsteadOfWaitingForSomebodyToReadThem) {
  HWINSTA const screen = GetProcessWindowStation();
  HWINSTA const unseen = CreateWindowStationA(nullptr, 0, WINSTA_ALL_ACCESS, nullptr);
  ASSERT_TRUE(SetProcessWindowStation(unseen));
  EXPECT_EQ(Qlx("call|WVNew|12345678|1|morgen|1|0|0|x").err,
            "Systemmeldung !\nGeben Sie bitte ein Datum an !\n");
  EXPECT_THAT(Qlx("letter|98010042").err, testing::HasSubstr("A choice was not made"));
  SetProcessWindowStation(screen);
  CloseWindowStation(unseen);
}

}  // namespace
