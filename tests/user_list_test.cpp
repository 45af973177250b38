// UserInit and UserNext.
#include "users/user_file.h"

#include "support/export_test.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;

class UserListTest : public ScriptedExportTest {
 protected:
  void HasThreeUsers() {
    using U = UserRecord;
    office.Has<U>({{U::number, 300}, {U::name, "Zöllner"}, {U::shortSign, "Z"}});
    office.Has<U>({{U::number, -2}, {U::name, "Vormals"}});
    office.Has<U>({{U::number, 17},
                   {U::name, "Meier"},
                   {U::secondText, "Rechtsanwältin und Notarin"},
                   {U::thirdText, "m.meier"},
                   {U::shortSign, "MEI"}});
  }
};

TEST_F(UserListTest, CountsTheUsers) {
  EXPECT_EQ(library->UserInit(), 0);
  HasThreeUsers();
  EXPECT_EQ(library->UserInit(), 3);
}

TEST_F(UserListTest, ListsTheUsersInTheOrderOfTheirNumbers) {
  HasThreeUsers();
  const std::pair<const char*, const char*> cases[] = {
      {"1", "Vormals||||-2"},
      {"2", "Meier|m.meier|Rechtsanwältin und Notarin|MEI|17"},
      {"3", "Zöllner|||Z|300"},
      {"0", "Vormals||||-2"},
      {"-7", "Vormals||||-2"},
      {"", "Vormals||||-2"},
      {"zwei", "Vormals||||-2"},
      {" 2. Benutzer", "Meier|m.meier|Rechtsanwältin und Notarin|MEI|17"},
  };
  for (const auto& [index, record] : cases) {
    CallerBuffer buffer;
    EXPECT_EQ(library->UserNext(index, buffer), -1) << index;
    EXPECT_THAT(buffer, HoldsRecordOnly(record)) << index;
  }
}

TEST_F(UserListTest, GivesFieldsAtTheirFullWidth) {
  using U = UserRecord;
  office.Has<U>({{U::number, 2147483647},
                 {U::name, std::string(30, 'n')},
                 {U::secondText, std::string(50, '2')},
                 {U::thirdText, std::string(8, '3')},
                 {U::shortSign, "sss"}});
  CallerBuffer buffer;
  EXPECT_EQ(library->UserNext("1", buffer), -1);
  EXPECT_THAT(buffer, HoldsRecordOnly(std::string(30, 'n') + "|33333333|" + std::string(50, '2') +
                                      "|sss|2147483647"));
}

TEST_F(UserListTest, WritesNothingBeyondTheLastUser) {
  HasThreeUsers();
  for (const char* index : {"4", "2147483647"}) {
    CallerBuffer buffer;
    EXPECT_EQ(library->UserNext(index, buffer), -1);
    EXPECT_THAT(buffer, IsUntouched());
  }
  CallerBuffer listEnd;
  static_cast<char*>(listEnd)[0] = static_cast<char*>(listEnd)[1] = '|';
  EXPECT_EQ(library->UserNext("4", listEnd), 0);
}

TEST_F(UserListTest, GivesZeroForAUserWithoutNameAndThirdText) {
  office.Has<UserRecord>({{UserRecord::number, 17}, {UserRecord::shortSign, "MEI"}});
  CallerBuffer buffer;
  EXPECT_EQ(library->UserNext("1", buffer), 0);
  EXPECT_THAT(buffer, HoldsRecordOnly("|||MEI|17"));
}

TEST_F(UserListTest, ReadsNoFurtherThanThePositionAskedFor) {
  HasThreeUsers();
  CallerBuffer buffer;
  EXPECT_EQ(library->UserNext("2", buffer), -1);
  EXPECT_THAT(manager.CallTexts(), ElementsAre("Open ZTUSER.KRV", "GetFirst ZTUSER.KRV 0",
                                               "GetNext ZTUSER.KRV 0", "Close ZTUSER.KRV"));
}

TEST_F(UserListTest, NeedsTheDataPathAndTheFile) {
  office.Lacks<UserRecord>();
  CallerBuffer buffer;
  EXPECT_EQ(library->UserInit(), 0);
  EXPECT_EQ(library->UserNext("1", buffer), -1);
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTUSER.KRV"), CannotOpen("ZTUSER.KRV")));

  office.IsNotConfigured("DataRoot");
  EXPECT_EQ(library->UserInit(), 0);
  EXPECT_EQ(library->UserNext("1", buffer), -1);
  EXPECT_THAT(user.Messages(), ElementsAre(NoDataPath("User"), NoDataPath("Userdaten")));
  EXPECT_THAT(buffer, IsUntouched());
}

TEST_F(UserListTest, IsSoundWhicheverCallFails) {
  HasThreeUsers();
  ExpectSoundWhicheverCallFails([&](char*) { return library->UserInit(); }, {0, 1, 2, 3});
  ExpectSoundWhicheverCallFails([&](char* buffer) { return library->UserNext("3", buffer); }, {-1});
}

}  // namespace
}  // namespace qlx99::tests
