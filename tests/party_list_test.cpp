// BListeInit and BListeNext.
#include "addresses/address_files.h"
#include "addresses/party_files.h"
#include "caseparties/case_party_file.h"
#include "cases/case_file.h"
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;
using A = AddressRecord;
using P = CasePartyRecord;

const std::string kCaseNumber = "12345678";

class PartyListTest : public ScriptedExportTest {
 protected:
  // Three parties of case 7, entered among those of others: a complete one, one without relation,
  // salutation and house number, and one of which only the relation is left.
  void SetUp() override {
    office.Has<CaseRecord>({{CaseRecord::id, 7}, {CaseRecord::caseNumber, kCaseNumber}});
    office.Has<RelationRecord>({{RelationRecord::id, 1}, {RelationRecord::code, "2"}});
    office.Has<SalutationRecord>(
        {{SalutationRecord::number, 2}, {SalutationRecord::salutation, "Herrn"}});
    office.Has<A>({{A::number, 4711},
                   {A::salutationNumber, 2},
                   {A::street, "Kölner Straße"},
                   {A::houseNumber, "5 a"},
                   {A::postalCode, "53111"},
                   {A::place, "Bonn"}});
    office.Has<A>(
        {{A::number, 4712}, {A::salutationNumber, 9}, {A::street, "Am Weg"}, {A::place, "Köln"}});
    HasContact(30, 4711, "Meier", "Geschäftsführer");
    HasContact(10, 4711, "Schulze", "");
    HasContact(20, 4712, "Groß & Klein", "");
    HasParty({{P::id, 301}, {P::caseId, 6}, {P::addressNumber, 4712}});
    HasParty({{P::id, 210}, {P::caseId, 7}, {P::addressNumber, 4711}, {P::relationId, 1}});
    HasParty({{P::id, 302}, {P::caseId, 8}, {P::addressNumber, 4712}});
    HasParty({{P::id, 209},
              {P::caseId, 7},
              {P::addressNumber, 4712},
              {P::relationId, 99},
              {P::addressLinkNumber, 815}});
    HasParty({{P::id, 208},
              {P::caseId, 7},
              {P::addressNumber, 9999},
              {P::relationId, 1},
              {P::addressLinkNumber, -1}});
  }

  void HasContact(std::int32_t number, std::int32_t addressNumber, const char* name,
                  const char* addition) {
    using Contact = ContactPersonRecord;
    office.Has<Contact>({{Contact::number, number},
                         {Contact::addressNumber, addressNumber},
                         {Contact::name, name},
                         {Contact::nameAddition, addition}});
  }

  void HasParty(const FieldValues& values) { office.Has<P>(values); }

  void ExpectEntry(const std::string& caseNumber, const char* index, const std::string& record,
                   std::int32_t result) {
    CallerBuffer buffer;
    EXPECT_EQ(library->BListeNext(caseNumber.c_str(), index, buffer), result) << index;
    EXPECT_THAT(buffer, HoldsRecordWithEndMark(record)) << index;
  }

  const std::string first_ = "2 |Herrn|Meier|Geschäftsführer|Kölner Straße 5 a|Bonn|4711||210";
};

TEST_F(PartyListTest, CountsThePartiesOfACase) {
  const std::pair<const char*, std::int32_t> cases[] = {
      {"12345678", 3}, {"1234567899", 3}, {"87654321", 0}, {"1234567", 0}, {"", 0}};
  for (const auto& [caseNumber, count] : cases) {
    EXPECT_EQ(library->BListeInit(caseNumber), count) << caseNumber;
  }
}

TEST_F(PartyListTest, ListsThePartiesAsTheyWereEntered) {
  ExpectEntry(kCaseNumber, "1", first_, -1);
  ExpectEntry(kCaseNumber, "2", "|Groß & Klein||Am Weg |Köln|4712|815|209", -1);
  ExpectEntry(kCaseNumber, "3", "2 |||||9999|-1|208", -1);
}

TEST_F(PartyListTest, TakesAPositionBelowOneForTheFirst) {
  for (const char* index : {"0", "-5", "abc", ""}) ExpectEntry(kCaseNumber, index, first_, -1);
}

TEST_F(PartyListTest, ReportsTheEndWhereThereIsNoParty) {
  HasParty({{P::id, 207}, {P::caseId, 7}, {P::relationId, 1}});  // without an address
  office.Has<CaseRecord>({{CaseRecord::id, 0}, {CaseRecord::caseNumber, "00000000"}});
  HasParty({{P::id, 206}, {P::caseId, 0}, {P::addressNumber, 4711}});
  const std::pair<const char*, const char*> cases[] = {{"12345678", "5"},
                                                       {"12345678", "2147483647"},
                                                       {"12345678", "4"},
                                                       {"87654321", "1"},
                                                       {"00000000", "1"}};
  for (const auto& [caseNumber, index] : cases) ExpectEntry(caseNumber, index, "||", 0);
  EXPECT_EQ(library->BListeInit("00000000"), 0);
}

TEST_F(PartyListTest, GivesZeroForAnEntryThatBeginsWithTwoEmptyFields) {
  office.Has<A>({{A::number, 4713}, {A::place, "Ulm"}});
  HasParty({{P::id, 205}, {P::caseId, 7}, {P::addressNumber, 4713}});
  ExpectEntry(kCaseNumber, "4", "||| |Ulm|4713||205", 0);
}

TEST_F(PartyListTest, GivesFieldsAtTheirFullWidth) {
  HasContact(40, 4714, std::string(115, 'n').c_str(), std::string(360, 'a').c_str());
  office.Has<A>({{A::number, 4714},
                 {A::street, std::string(50, 's')},
                 {A::houseNumber, std::string(15, 'h')},
                 {A::place, std::string(50, 'p')}});
  HasParty({{P::id, 205}, {P::caseId, 7}, {P::addressNumber, 4714}});
  ExpectEntry(kCaseNumber, "4",
              "|" + std::string(115, 'n') + "|" + std::string(360, 'a') + "|" +
                  std::string(50, 's') + " " + std::string(15, 'h') + "|" + std::string(50, 'p') +
                  "|4714||205",
              -1);
}

TEST_F(PartyListTest, OpensThreeFilesToFindAPartyAndThreeMoreToNameIt) {
  CallerBuffer buffer;
  library->BListeNext("12345678", "2", buffer);
  std::vector<std::string> texts = manager.CallTexts();
  texts.resize(texts.size() - 6);  // closing
  EXPECT_THAT(texts,
              ElementsAre("Open ZTCASE.KRV", "Open ZTHEAD.KRV", "Open ZTKOFPAR.KRV",
                          "GetEqual ZTCASE.KRV 1", "GetEqual ZTHEAD.KRV 1", "GetNext ZTHEAD.KRV 1",
                          "GetEqual ZTKOFPAR.KRV 0", "Open ZTPART.KRV", "Open ZTADRESS.KRV",
                          "Open ZTKOADBY.KRV", "GetEqual ZTADRESS.KRV 0", "GetEqual ZTKOADBY.KRV 0",
                          "GetEqual ZTPART.KRV 2"));
}

TEST_F(PartyListTest, StopsAtTheFirstFileThatCannotBeOpened) {
  const std::vector<std::string> files{"ZTCASE.KRV", "ZTHEAD.KRV",   "ZTKOFPAR.KRV",
                                       "ZTPART.KRV", "ZTADRESS.KRV", "ZTKOADBY.KRV"};
  for (std::size_t i = 0; i < files.size(); ++i) {
    SCOPED_TRACE(files[i]);
    manager.Forget();
    for (std::size_t j = i; j < files.size(); ++j) manager.Answers(btrieve::kOpen, files[j], 12);
    ExpectEntry(kCaseNumber, "1", "||", 0);
    EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen(files[i])));
    if (i >= 3) continue;
    EXPECT_EQ(library->BListeInit("12345678"), 0);
    EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen(files[i])));
  }
}

TEST_F(PartyListTest, NeedsTheDataPath) {
  office.IsNotConfigured("DataRoot");
  EXPECT_EQ(library->BListeInit("12345678"), 0);
  ExpectEntry(kCaseNumber, "1", "||", 0);
  EXPECT_THAT(user.Messages(), ElementsAre(NoDataPath("Adressadaten"), NoDataPath("Adressadaten")));
}

TEST_F(PartyListTest, IsSoundWhicheverCallFails) {
  ExpectSoundWhicheverCallFails([&](char*) { return library->BListeInit("12345678"); },
                                {0, 1, 2, 3});
  ExpectSoundWhicheverCallFails(
      [&](char* buffer) { return library->BListeNext("12345678", "2", buffer); }, {0, -1});
}

}  // namespace
}  // namespace qlx99::tests
