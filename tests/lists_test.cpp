// The exports that deliver a list: one tells how many entries there are, its partner the entry at a
// position.
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;
using H = CasePartyRecord;

class ListsTest : public ExampleOfficeTest {
 protected:
  std::string User(const char* index) {
    return OutcomeOf([&](char* b) { return library->UserNext(index, b); });
  }
  std::string Kind(const char* index) {
    return OutcomeOf([&](char* b) { return library->ZtkodoliNext(index, b); });
  }
  std::string FollowUp(const char* index, const char* caseNumber = "12345678") {
    return OutcomeOf([&](char* b) { return library->WVNext(caseNumber, index, b); });
  }
  std::string Party(const char* index, const char* caseNumber = "12345678") {
    return OutcomeOf([&](char* b) { return library->BListeNext(caseNumber, index, b); });
  }
};

TEST_F(ListsTest, AreCounted) {
  EXPECT_EQ(library->UserInit(), 3);
  EXPECT_EQ(library->ZtkodoliInit(), 2);
  // Of a case's number 8 characters count.
  const struct {
    const char* caseNumber;
    int followUps;
    int parties;
  } rows[] = {{"12345678", 2, 4}, {"12345678XY", 2, 4}, {"12345679", 1, 1}, {"1234567", 0, 0},
              {"87654321", 0, 0}, {"", 0, 0},           {nullptr, 0, 0}};
  for (const auto& [caseNumber, followUps, parties] : rows) {
    EXPECT_EQ(library->WVInit(caseNumber), followUps);
    EXPECT_EQ(library->BListeInit(caseNumber), parties);
  }
}

// Users and kinds in the order of their numbers, the others as they were entered. A position below
// one, or none at all, is the first; beyond the last there is nothing.
TEST_F(ListsTest, DeliverTheEntryAtEachPosition) {
  EXPECT_EQ(User("1"), "-1 Vormals||||-2");
  EXPECT_EQ(User("2"), "-1 Meier|m.meier|Rechtsanwältin|MEI|17");
  EXPECT_EQ(User(" 3. Benutzer"), "-1 Zöllner|||Z|300");
  EXPECT_EQ(User("4"), "-1 ");
  EXPECT_EQ(Kind("1"), "-1 |5|-2");
  EXPECT_EQ(Kind("2"), "-1 Frist prüfen|30|3");
  EXPECT_EQ(Kind("3"), "-1 ");
  EXPECT_EQ(FollowUp("1"), "-1 02.01.2000|Frist prüfen|3|Berufung begründen|Meier|MEI|17|||0|2|1");
  // No date, and a kind, a user and a party that are not there.
  EXPECT_EQ(FollowUp("2"), "0 ||-7||||99|Meier|MEI|17|0|3");
  EXPECT_EQ(FollowUp("3"), "-1 ");
  EXPECT_EQ(FollowUp("1", "00000000"), "-1 ");
  EXPECT_EQ(Party("1"), "-1 2 |Familie|Müller|GmbH|Königsallee 12 a|Düsseldorf|4711||210<end>");
  // A relation, a salutation and a house number that are not there; then not even the address.
  EXPECT_EQ(Party("2"), "-1 |Groß & Klein||Am Weg |Köln|4712|815|209<end>");
  EXPECT_EQ(Party("4"), "-1 2 |||||9999|-1|207<end>");
  EXPECT_EQ(Party("5"), "0 ||<end>");
  EXPECT_EQ(Party("1", "87654321"), "0 ||<end>");
  for (const char* index : {"0", "-5", "eins", "", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(User(index), User("1"));
    EXPECT_EQ(Kind(index), Kind("1"));
    EXPECT_EQ(FollowUp(index), FollowUp("1"));
    EXPECT_EQ(Party(index), Party("1"));
  }
  EXPECT_EQ(Party("2147483647"), "0 ||<end>");
  // A number's text ends where its digits do. One beyond 32 bits is the nearest that fits.
  const std::string farIn = std::string(2000, ' ') + "+" + std::string(2000, '0') + "2";
  for (const char* index : {"2", "\t02", "2,5", "2-", farIn.c_str()})
    EXPECT_EQ(User(index), User("2"));
  for (const char* index : {"-2", "- 2", "--2", "0x2", "-4294967294", "-99999999999999999999"}) {
    EXPECT_EQ(User(index), User("1"));
  }
  for (const char* index : {"2147483648", "4294967298", "99999999999999999999"}) {
    EXPECT_EQ(User(index), "-1 ");
  }
}

TEST_F(ListsTest, EndAtTwoEmptyFieldsAndAtPartiesWithoutAddress) {
  office.Has<UserRecord>("number: -3, shortSign: MEI");
  EXPECT_EQ(User("1"), "0 |||MEI|-3");
  CallerBuffer buffer;  // what the caller had there before counts as well
  buffer[0] = buffer[1] = '|';
  EXPECT_EQ(library->UserNext("9", buffer), 0);
  office.Has<AddressRecord>("number: 4713, place: Ulm");
  office.Has<H>("id: 205, caseId: 7, addressNumber: 4713");
  office.Has<H>("id: 206, caseId: 7, relationId: 1");
  EXPECT_EQ(Party("5"), "0 ||| |Ulm|4713||205<end>");
  EXPECT_EQ(Party("6"), "0 ||<end>");
}

TEST_F(ListsTest, KeepTheirFieldsWhenALookupFileIsMissing) {
  office.Lacks<FollowUpKindRecord>();
  office.Lacks<UserRecord>();
  office.Lacks<H>();
  const MessageBox noKind = CannotOpen("ZTKODOLI.KRV");
  const MessageBox noUser = CannotOpen("ZTUSER.KRV");
  EXPECT_EQ(FollowUp("1"), "-1 02.01.2000||3|Berufung begründen|||17|||0|0|1");
  EXPECT_THAT(user.Messages(), ElementsAre(noKind, noUser, noUser, CannotOpen("ZTHEAD.KRV")));
  EXPECT_EQ(FollowUp("1", "12345679"), "-1 02.01.2000||3||||0|||0|0|2") << "without a party";
  EXPECT_THAT(user.Messages(), ElementsAre(noKind, noUser, noUser));
}

TEST_F(ListsTest, EndAtTheEndOfARecordThatIsTooShort) {
  manager.CutsRecordsTo(40);
  EXPECT_EQ(User("2"), "-1 Meier|");
}

}  // namespace
}  // namespace qlx99::tests
