// BLesenDLL: the party of a case in a role, and the dialog in which the user picks one of several.
#include "resources/resource.h"
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using C = CaseRecord;
using H = CasePartyRecord;
using P = ContactPersonRecord;
using R = RelationRecord;

class PartyByRoleTest : public ExampleOfficeTest {
 protected:
  PartyByRoleTest() {
    office.Has<C>("id: 9, caseNumber: 23456789, rubrum: Brandstätter ./. Wernicke");
  }

  // A party of the case with a relation of that code; without a code, with none that is there.
  void HasParty(const std::string& address, const std::string& code = "",
                const std::string& link = "0") {
    const std::string id = std::to_string(nextId_++);
    if (!code.empty()) {
      office.Has<R>("id: " + id + ", designation: Beziehung " + code + ", code: " + code);
    }
    office.Has<H>("caseId: 9, id: " + id + ", relationId: " + id + ", addressNumber: " + address +
                  ", addressLinkNumber: " + link);
  }

  std::string Ask(const char* roleUtf8, const char* noDialog = "",
                  const char* caseNumber = "23456789") {
    const std::string role = Ansi(roleUtf8);
    return OutcomeOf([&](char* b) {
      return library->BLesenDLL(role.c_str(), caseNumber, nullptr, noDialog, b);
    });
  }

 private:
  std::int32_t nextId_ = 500;
};

TEST_F(PartyByRoleTest, DeliversTheOnlyPartyInTheRole) {
  HasParty("4711", "25", "815");
  HasParty("4712", "0 ");
  HasParty("-5", "13", "-6");
  EXPECT_EQ(Ask("M ", nullptr, "23456789XX"), "-1 4711|25|0|815<0>");
  EXPECT_EQ(Ask("G "), "-1 4712|0 |0|<0>");
  EXPECT_EQ(Ask("V "), "-1 -5|13|0|-6<0>");
  for (const char* role : {"C ", "X ", "M", "M  ", "M x", "m ", ""}) {
    EXPECT_EQ(Ask(role), "0 ") << role;
  }
  EXPECT_EQ(Ask("M ", "", nullptr), "0 ");
  EXPECT_EQ(library->BLesenDLL(nullptr, "23456789", nullptr, nullptr, CallerBuffer()), 0);
  EXPECT_EQ(library->BLesenDLL("M ", "23456789", nullptr, nullptr, nullptr), 0);

  // A party whose relation cannot be read counts for every role.
  HasParty("4713", "", "816");
  EXPECT_EQ(Ask("C "), "-1 4713||0|816<0>");
  office.Lacks<R>();
  EXPECT_EQ(Ask("X ", "1"), "0 ") << "four parties and no dialog";
  EXPECT_EQ(user.Messages(), std::vector(4, CannotOpen("ZTKOFPAR.KRV")));
}

TEST_F(PartyByRoleTest, KnowsTheRelationsOfEachRole) {
  const struct {
    const char* role;
    const char* title;
    const char* codes;  // of the parties that are offered
  } rows[] = {
      {"M ", "Mandant auswählen", "2 |25|"},
      {"G ", "Gegner auswählen", "0 |0 |"},
      {"V ", "Gegenanwalt auswählen", "13|13|"},
      {"C ", "Gericht auswählen", "30|31|32|"},
      {"§M", "gesetzlicher Vertreter Mandant auswählen", "18|19|20|21|22|23|24|28|"},
      {"§G", "gesetzlicher Vertreter Gegner auswählen", "6 |7 |8 |9 |10|11|12|16|"},
      {"RM", "Rechtschutzversicherung Mandant auswählen", "27|27|"},
      {"HG", "Haftpflichtversicherung Gegner auswählen", "14|14|"},
  };
  for (int code = 0; code <= 40; ++code) HasParty("4710", std::to_string(code));
  for (const char* again : {"0", "13", "14", "27"}) HasParty("4710", again);
  user.TakesTheSelectedFromNowOn();
  for (const auto& [role, title, codes] : rows) {
    Ask(role);
    const ShownDialog dialog = user.OnlyDialog();
    EXPECT_EQ(dialog.title, title);
    std::string offered;
    for (const auto& reference : dialog.Control(IDC_PARTY_REFERENCES).lines) {
      offered += reference.substr(5, 3);  // "4710|2 |0|"
    }
    EXPECT_EQ(offered, codes) << role;
  }
  Ask("  ");
  EXPECT_THAT(user.Dialogs().at(0).List().lines, SizeIs(45));
}

class PartySelectionTest : public PartyByRoleTest {
 protected:
  PartySelectionTest() {
    HasParty("4710", "0 ");
    HasParty("4712", "2 ");
    HasParty("4713", "0 ", "815");
    office.Has<P>("number: 1, addressNumber: 4713, firstName: Jörg, name: Wernicke" +
                  std::string(30, 'x'));
    office.Has<P>("number: 2, addressNumber: 4713, name: Zweiter");
  }
};

TEST_F(PartySelectionTest, ShowsTheCaseAndItsPartiesInTheRole) {
  HasParty("4714");
  user.Chooses(2);
  EXPECT_EQ(Ask("G "), "-1 4713|0 |0|815<0>");
  const ShownDialog dialog = user.OnlyDialog();
  EXPECT_EQ(dialog.title, "Gegner auswählen");
  EXPECT_EQ(dialog.Control(IDC_CASE_NUMBER).text, "23456789  ");
  EXPECT_EQ(dialog.Control(IDC_RUBRUM).text, "Brandstätter ./. Wernicke" + std::string(18, ' '))
      << "not trimmed";
  EXPECT_EQ(dialog.Control(IDC_PARTY_LINES).selected, 0);
  EXPECT_THAT(
      dialog.Control(IDC_PARTY_LINES).lines,
      ElementsAre("Beziehung 0\t", "Beziehung 0\tJörg\t Wernicke" + std::string(27, 'x'), "\t"));
  EXPECT_THAT(dialog.Control(IDC_PARTY_REFERENCES).lines,
              ElementsAre("4710|0 |0|", "4713|0 |0|815", "4714||0|"));
}

TEST_F(PartySelectionTest, GivesWhatTheUserDecides) {
  user.TakesTheSelected();
  EXPECT_EQ(Ask("G "), "-1 4710|0 |0|<0>");
  user.Presses(IDC_CANCEL);
  EXPECT_EQ(Ask("G "), "0 | | |<0>");
  user.Cancels();
  EXPECT_EQ(Ask("G ", "0"), "0 | | |<0>");
  EXPECT_EQ(Ask("G ", "1"), "0 ");
  user.TakesTheSelected();
  EXPECT_EQ(Ask("G ", "11"), "-1 4710|0 |0|<0>") << "only exactly 1 suppresses the dialog";
  std::string noDialog = "0";
  manager.Meanwhile(btrieve::kClose, "ZTHEAD.KRV", [&] { noDialog = "1"; });  // of the next call
  user.TakesTheSelected();
  EXPECT_EQ(Ask("G ", noDialog.c_str()), "-1 4710|0 |0|<0>");
  EXPECT_THAT(user.Dialogs(), SizeIs(5));
  HasParty("4714", "ä€");
  user.Chooses(4);
  EXPECT_EQ(Ask("  "), "-1 4714|ä€|0|<0>") << "whatever the relation is called";
}

TEST_F(PartySelectionTest, ClosesAtOnceWhenItCannotBeFilled) {
  office.Lacks<AddressLinkRecord>();
  EXPECT_EQ(Ask("G "), "0 | | |<0>");
  manager.Meanwhile(btrieve::kClose, "ZTHEAD.KRV", [&] { office.IsNotConfigured("DataRoot"); });
  EXPECT_EQ(Ask("G "), "0 | | |<0>");
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTADTOAD.KRV"), NoDataPath("Adressadaten")));
  EXPECT_THAT(user.Dialogs(), IsEmpty());
}

}  // namespace
}  // namespace qlx99::tests
