// BLesenDLL: the party of a case in a role, and the dialog in which the user picks one of several.
#include <gtest/gtest.h>

#include "addresses/party_files.h"
#include "caseparties/case_party_file.h"
#include "cases/case_file.h"
#include "resources/resource.h"
#include "support/export_test.h"
#include "users/user_file.h"

namespace qlx99::tests {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using P = ContactPersonRecord;
using R = RelationRecord;

const std::string kRubrum = "Brandstätter ./. Wernicke";

class PartyByRoleTest : public ScriptedExportTest {
 protected:
  PartyByRoleTest() {
    office.Has<CaseRecord>(
        {{CaseRecord::id, 7}, {CaseRecord::caseNumber, "12345678"}, {CaseRecord::rubrum, kRubrum}});
  }

  void HasParty(std::int32_t address, const std::string& code, std::int32_t link = 0) {
    const std::int32_t id = nextId_++;
    office.Has<R>({{R::id, id}, {R::designation, "Beziehung " + code}, {R::code, code}});
    HasPartyInRelation(address, id, link);
  }

  void HasPartyInRelation(std::int32_t address, std::int32_t relation, std::int32_t link = 0) {
    using H = CasePartyRecord;
    office.Has<H>({{H::id, nextId_++},
                   {H::caseId, 7},
                   {H::addressNumber, address},
                   {H::relationId, relation},
                   {H::addressLinkNumber, link}});
  }

  // What the macro gets, with the result behind it.
  std::string Ask(const char* roleUtf8, const char* noDialog = "") {
    CallerBuffer buffer;
    const std::string role = Ansi(roleUtf8);
    const auto result = library->BLesenDLL(role.c_str(), "12345678", nullptr, noDialog, buffer);
    return std::string(buffer.Record()) + " " + std::to_string(result);
  }

 private:
  std::int32_t nextId_ = 1;
};

TEST_F(PartyByRoleTest, DeliversTheOnlyPartyInTheRole) {
  HasParty(4711, "25", 815);
  HasParty(4712, "0 ");
  HasParty(-5, "13", -6);
  EXPECT_EQ(Ask("M "), "4711|25|0|815 -1");
  EXPECT_EQ(Ask("G "), "4712|0 |0| -1");
  EXPECT_EQ(Ask("V "), "-5|13|0|-6 -1");
  EXPECT_EQ(Ask("C "), " 0");
  CallerBuffer buffer;
  library->BLesenDLL("M ", "12345678XX", nullptr, nullptr, buffer);
  EXPECT_THAT(buffer, HoldsTerminated("4711|25|0|815"));
}

TEST_F(PartyByRoleTest, KnowsTheRelationsOfEachRole) {
  const struct {
    const char* role;
    std::vector<std::string> codes;
  } rows[] = {
      {"M ", {"2 ", "25"}},
      {"G ", {"0 "}},
      {"V ", {"13"}},
      {"C ", {"30", "31", "32"}},
      {"§M", {"18", "19", "20", "21", "22", "23", "24", "28"}},
      {"§G", {"6 ", "7 ", "8 ", "9 ", "10", "11", "12", "16"}},
      {"RM", {"27"}},
      {"HG", {"14"}},
  };
  std::int32_t address = 0;
  for (int number = 0; number <= 40; ++number) {
    std::string code = std::to_string(number);
    HasParty(++address, code.size() == 2 ? code : code + " ");
  }
  for (const auto& row : rows) {
    SCOPED_TRACE(row.role);
    if (row.codes.size() == 1) {
      EXPECT_THAT(Ask(row.role), testing::HasSubstr("|" + row.codes[0] + "|0| -1"));
      continue;
    }
    user.Cancels();
    Ask(row.role);
    std::vector<std::string> lines;
    for (const auto& code : row.codes) {
      lines.push_back("Beziehung " + code.substr(0, code.find(' ')) + "\t");
    }
    EXPECT_EQ(user.OnlyDialog().List().lines, lines);
  }
  user.Cancels();
  Ask("  ");
  EXPECT_THAT(user.OnlyDialog().List().lines, SizeIs(41));
}

TEST_F(PartyByRoleTest, MatchesNothingForARoleThatItDoesNotKnow) {
  HasParty(4711, "2 ");
  for (const char* role : {"X ", "M", "M  ", "M x", "m ", ""}) EXPECT_EQ(Ask(role), " 0");
  CallerBuffer buffer;
  EXPECT_EQ(library->BLesenDLL(nullptr, "12345678", nullptr, nullptr, buffer), 0);
  EXPECT_EQ(library->BLesenDLL("M ", nullptr, nullptr, nullptr, buffer), 0);
  EXPECT_EQ(library->BLesenDLL("M ", "12345678", nullptr, nullptr, nullptr), 0);
  EXPECT_THAT(buffer, IsUntouched());
}

TEST_F(PartyByRoleTest, OffersAPartyWhoseRelationCannotBeReadForEveryRole) {
  HasPartyInRelation(4711, 99, 815);
  EXPECT_EQ(Ask("G "), "4711||0|815 -1");
  HasParty(4712, "0 ");
  office.Lacks<R>();
  EXPECT_EQ(Ask("X ", "1"), " 0");
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTKOFPAR.KRV"), CannotOpen("ZTKOFPAR.KRV")));
}

class PartySelectionTest : public PartyByRoleTest {
 protected:
  PartySelectionTest() {
    HasParty(4711, "0 ");
    HasParty(4712, "2 ");
    HasParty(4713, "0 ", 815);
    office.Has<P>({{P::number, 1},
                   {P::addressNumber, 4713},
                   {P::firstName, "Jörg"},
                   {P::name, "Wernicke" + std::string(30, 'x')}});
    office.Has<P>({{P::number, 2}, {P::addressNumber, 4713}, {P::name, "Zweiter"}});
  }
};

TEST_F(PartySelectionTest, ShowsTheCaseAndItsPartiesInTheRole) {
  user.Chooses(2);
  EXPECT_EQ(Ask("G "), "4713|0 |0|815 -1");
  const ShownDialog dialog = user.OnlyDialog();
  EXPECT_EQ(dialog.title, "Gegner auswählen");
  EXPECT_EQ(dialog.Control(IDC_CASE_NUMBER).text, "12345678  ");
  EXPECT_EQ(dialog.Control(IDC_RUBRUM).text, kRubrum + std::string(18, ' ')) << "not trimmed";
  EXPECT_EQ(dialog.Control(IDC_PARTY_LINES).selected, 0);
  EXPECT_THAT(dialog.Control(IDC_PARTY_LINES).lines,
              ElementsAre("Beziehung 0\t", "Beziehung 0\tJörg\t Wernicke" + std::string(27, 'x')));
  EXPECT_THAT(dialog.Control(IDC_PARTY_REFERENCES).lines,
              ElementsAre("4711|0 |0|", "4713|0 |0|815"));
}

TEST_F(PartySelectionTest, GivesWhatTheUserDecides) {
  user.TakesTheSelected();
  EXPECT_EQ(Ask("G "), "4711|0 |0| -1");
  user.Presses(IDC_CANCEL);
  EXPECT_EQ(Ask("G "), "| | | 0");
  user.Cancels();
  EXPECT_EQ(Ask("G ", "0"), "| | | 0");
  EXPECT_THAT(user.Dialogs(), SizeIs(3));
  EXPECT_EQ(Ask("G ", "1"), " 0");
  user.TakesTheSelected();
  EXPECT_EQ(Ask("G ", "11"), "4711|0 |0| -1") << "only exactly 1 suppresses the dialog";
  user.Dialogs();
}

TEST_F(PartySelectionTest, OpensItsFilesInOneFixedOrder) {
  HasPartyInRelation(4714, 99);
  user.Cancels();
  Ask("G ");
  EXPECT_THAT(user.OnlyDialog().List().lines, SizeIs(3));
  const auto calls = manager.CallTexts();
  const auto dialog = std::find(calls.begin(), calls.end(), "Open ZTPART.KRV");
  ASSERT_GE(calls.end() - dialog, 9);
  EXPECT_THAT(std::vector(dialog, dialog + 9),
              ElementsAre("Open ZTPART.KRV", "Open ZTCASE.KRV", "Open ZTKOFPAR.KRV",
                          "Open ZTKOTITL.KRV", "Open ZTKOADBY.KRV", "Open ZTADTOAD.KRV",
                          "Open ZTHEAD.KRV", "Open ZTADRESS.KRV", "GetEqual ZTCASE.KRV 1"));
}

TEST_F(PartySelectionTest, ClosesAtOnceWhenItCannotBeFilled) {
  office.Lacks<AddressLinkRecord>();
  EXPECT_EQ(Ask("G "), "| | | 0");
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTADTOAD.KRV")));

  manager.Meanwhile(btrieve::kClose, "ZTHEAD.KRV", [&] { office.IsNotConfigured("DataRoot"); });
  EXPECT_EQ(Ask("G "), "| | | 0");
  EXPECT_EQ(Ask("G "), " 0");
  EXPECT_THAT(user.Messages(),
              ElementsAre(NoDataPath("Adressadaten"), NoDataPath("Dokumentdaten")));
  EXPECT_THAT(user.Dialogs(), IsEmpty());
}

TEST_F(PartySelectionTest, IsSoundWhicheverCallFails) {
  user.TakesTheSelectedFromNowOn();
  for (const char* role : {"M ", "G "}) {
    ExpectSoundWhicheverCallFails(
        [&](char* b) { return library->BLesenDLL(role, "12345678", "", "", b); }, {0, -1});
  }
}

}  // namespace
}  // namespace qlx99::tests
