// ALesenDLL: 25 fields of an address, and the dialogs in which the user chooses among several
// contact persons or bank connections.
#include <gtest/gtest.h>

#include "addresses/address_files.h"
#include "addresses/party_files.h"
#include "caseparties/case_party_file.h"
#include "cases/case_file.h"
#include "resources/resource.h"
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using A = AddressRecord;
using B = BankConnectionRecord;
using P = ContactPersonRecord;

class AddressReadingTest : public ScriptedExportTest {
 protected:
  AddressReadingTest() {
    office.Has<CaseRecord>({{CaseRecord::id, 7}, {CaseRecord::caseNumber, "12345678"}});
    office.Has<A>({{A::number, 4711},
                   {A::nationalityNumber, 4},
                   {A::salutationNumber, 1},
                   {A::street, "Königsallee"},
                   {A::houseNumber, "12 a"},
                   {A::postalCode, "40212"},
                   {A::place, "Düsseldorf"},
                   {A::secondPostalCode, "40001"},
                   {A::secondPlace, "Postfach"}});
    office.Has<P>(Contact(100, "Müller"));
    office.Has<B>({{B::number, 200},
                   {B::addressNumber, 4711},
                   {B::bankName, "Sparkasse"},
                   {B::bankCode, "300 501 10"},
                   {B::accountNumber, "47 11"}});
    office.Has<TitleRecord>({{TitleRecord::number, 9}, {TitleRecord::title, "Dr."}});
    office.Has<SalutationRecord>({{SalutationRecord::number, 1},
                                  {SalutationRecord::letterSalutation, "Sehr geehrte Familie"}});
    office.Has<SalutationRecord>({{SalutationRecord::number, 2},
                                  {SalutationRecord::letterSalutation, "Sehr geehrter Herr"}});
    office.Has<NationalityRecord>(
        {{NationalityRecord::number, 4}, {NationalityRecord::nationality, "österreichisch"}});
    office.Has<RelationRecord>(
        {{RelationRecord::id, 55}, {RelationRecord::designation, "Vormund"}});
    office.Has<AddressLinkRecord>({{AddressLinkRecord::id, 1},
                                   {AddressLinkRecord::linkNumber, 815},
                                   {AddressLinkRecord::addressNumber, 9999}});
    office.Has<AddressLinkRecord>({{AddressLinkRecord::id, 2},
                                   {AddressLinkRecord::linkNumber, 815},
                                   {AddressLinkRecord::addressNumber, 4711},
                                   {AddressLinkRecord::relationId, 55},
                                   {AddressLinkRecord::linkText, "bestellt 2001"}});
    office.Has<AddressLinkRecord>({{AddressLinkRecord::id, 3},
                                   {AddressLinkRecord::linkNumber, 816},
                                   {AddressLinkRecord::addressNumber, 4712}});
    HasParty(0, "ohne Link", "unten");
    HasParty(815, "z. Hd. Frau Weiß", "Hinterhaus");
  }

  static FieldValues Contact(std::int32_t number, const char* name) {
    return {{P::number, number},    {P::name, name},         {P::addressNumber, 4711},
            {P::titleNumber, 9},    {P::firstName, "Jörg"},  {P::nameAddition, "GmbH"},
            {P::freeText, "frei"},  {P::shortField1, "1"},   {P::shortField2, "2"},
            {P::shortField3, "3"},  {P::shortField4, "4"},   {P::shortField5, "5"},
            {P::wideField, "weit"}, {P::salutationNumber, 2}};
  }

  void HasParty(std::int32_t link, const char* contactAddition, const char* addressAddition) {
    using R = CasePartyRecord;
    office.Has<R>({{R::id, nextParty_++},
                   {R::caseId, 7},
                   {R::addressNumber, 4711},
                   {R::addressLinkNumber, link},
                   {R::contactAddition, contactAddition},
                   {R::addressAddition, addressAddition}});
  }

  // The record for the given contact person's name and last block, all else as arranged above.
  static std::string RecordWith(const std::string& name, const std::string& addressAddition,
                                const std::string& linkBlock) {
    return "Jörg|" + name + "|Sehr geehrter Herr|Dr.|GmbH|frei|1|2|3|4|5|weit|" +
           "Königsallee 12 a|40212|Düsseldorf|40001|Postfach|" + addressAddition +
           "|österreichisch|Sparkasse|300 501 10|47 11|" + linkBlock;
  }

  void ExpectRecord(const std::string& expected, const char* caseNumber = "12345678",
                    const char* link = "815") {
    CallerBuffer buffer;
    EXPECT_EQ(library->ALesenDLL(caseNumber, "4711", buffer, link),
              expected.starts_with("||") ? 0 : -1);
    EXPECT_THAT(buffer, HoldsRecordWithEndMark(expected));
  }

  const std::string whole_ =
      RecordWith("Müller", "Hinterhaus", "z. Hd. Frau Weiß|bestellt 2001|Vormund");

 private:
  std::int32_t nextParty_ = 500;
};

TEST_F(AddressReadingTest, DeliversAllFieldsInOneFixedOrderOfCalls) {
  ExpectRecord(whole_);
  EXPECT_THAT(
      manager.CallTexts(),
      ElementsAre("Open ZTPART.KRV", "Open ZTKOFPAR.KRV", "Open ZTKOTITL.KRV", "Open ZTKOADBY.KRV",
                  "Open ZTADRESS.KRV", "Open ZTBANK.KRV",                                      //
                  "GetEqual ZTPART.KRV 2", "GetNext ZTPART.KRV 2", "GetEqual ZTKOADBY.KRV 0",  //
                  "GetEqual ZTKOTITL.KRV 0",                                                   //
                  "GetEqual ZTADRESS.KRV 0", "Open ZTHEAD.KRV", "Open ZTCASE.KRV",             //
                  "GetEqual ZTCASE.KRV 1", "GetEqual ZTHEAD.KRV 1", "GetNext ZTHEAD.KRV 1",    //
                  "Close ZTCASE.KRV", "Close ZTHEAD.KRV", "Open ZTKONAT.KRV",                  //
                  "GetEqual ZTKONAT.KRV 0", "Close ZTKONAT.KRV",                               //
                  "GetEqual ZTBANK.KRV 1", "GetNext ZTBANK.KRV 1",                             //
                  "GetEqual ZTADRESS.KRV 0", "Open ZTADTOAD.KRV", "GetEqual ZTADTOAD.KRV 1",   //
                  "GetNext ZTADTOAD.KRV 1", "GetEqual ZTKOFPAR.KRV 0", "Close ZTADTOAD.KRV",   //
                  "Close ZTBANK.KRV", "Close ZTADRESS.KRV", "Close ZTKOADBY.KRV",
                  "Close ZTKOTITL.KRV", "Close ZTKOFPAR.KRV", "Close ZTPART.KRV"));
}

TEST_F(AddressReadingTest, RemembersTheLinkNumberThatWasGivenLast) {
  const std::string withoutLink = RecordWith("Müller", "unten", "ohne Link||");
  ExpectRecord(withoutLink, "12345678", nullptr);
  ExpectRecord(whole_, "12345678", "815");
  ExpectRecord(whole_, "12345678", nullptr);
  ExpectRecord(RecordWith("Müller", "", "||"), "12345678", "816");
  ExpectRecord(withoutLink, "12345678", "no number");
  ExpectRecord(RecordWith("Müller", "", "||"), "00000000", "815");
  ExpectRecord(RecordWith("Müller", "", "||"), nullptr, "815");
}

TEST_F(AddressReadingTest, LeavesFieldsEmptyForWhatIsNotThere) {
  const std::string noContact(12, '|');
  CallerBuffer buffer;
  EXPECT_EQ(library->ALesenDLL("12345678", "4712", buffer, "815"), 0);
  EXPECT_THAT(buffer, HoldsRecordWithEndMark(std::string(24, '|')));

  office.Has<A>({{A::number, 4713}, {A::street, "Markt"}});
  EXPECT_EQ(library->ALesenDLL("12345678", "4713", buffer, "815"), 0);
  EXPECT_EQ(Utf8(buffer.Record()), noContact + "Markt ||||||||||||");

  EXPECT_EQ(library->ALesenDLL("12345678", "4711", nullptr, "815"), 0);
}

TEST_F(AddressReadingTest, TakesTheAddressesSalutationOnlyForAContactPersonWithoutOne) {
  const struct {
    std::int32_t salutation;
    const char* field;
  } rows[] = {{0, "Sehr geehrte Familie"}, {2, "Sehr geehrter Herr"}, {77, ""}};
  for (const auto& row : rows) {
    office.Changes<P>(P::byNumber, 100,
                      {{P::salutationNumber, row.salutation}, {P::titleNumber, 0}});
    CallerBuffer buffer;
    library->ALesenDLL("12345678", "4711", buffer, "815");
    const std::string begin = std::string("Jörg|Müller|") + row.field + "||GmbH|";
    EXPECT_TRUE(Utf8(buffer.Record()).starts_with(begin)) << Utf8(buffer.Record());
  }
}

TEST_F(AddressReadingTest, UserChoosesAmongSeveralContactPersons) {
  office.Has<P>(Contact(256, "Meier"));
  office.Has<P>(Contact(65536, std::string(115, 'n').c_str()));
  office.Has<P>(Contact(-1, "Schulze"));
  const struct {
    int line;
    std::string name;
  } rows[] = {{1, "Müller"}, {2, "Meier"}, {3, std::string(115, 'n')}, {4, "Schulze"}};
  for (const auto& row : rows) {
    user.Chooses(row.line);
    ExpectRecord(RecordWith(row.name, "Hinterhaus", "z. Hd. Frau Weiß|bestellt 2001|Vormund"));
  }
  const ShownDialog dialog = user.Dialogs().front();
  EXPECT_EQ(dialog.title, "Ansprechpartner auswählen");
  EXPECT_EQ(dialog.Control(IDC_CHOICE_REASON).text,
            "Zum ausgewählten Adressant wurden mehrere Ansprechpartner angelegt ! ");
  EXPECT_EQ(dialog.Control(IDC_CHOICE_REQUEST).text, "Bitte wählen Sie einen Ansprechpartner aus.");
  EXPECT_EQ(dialog.Control(IDC_TAKE).text, "&Übernehmen");
  EXPECT_EQ(dialog.List().selected, 0);
  EXPECT_THAT(dialog.List().lines,
              ElementsAre("Müller\tJörg\t", "Meier\tJörg\t", std::string(115, 'n') + "\tJörg\t",
                          "Schulze\tJörg\t"));
  user.Cancels();
  ExpectRecord(whole_);
  user.Dialogs();
}

TEST_F(AddressReadingTest, UserChoosesAmongSeveralBankConnections) {
  office.Has<B>({{B::number, 201},
                 {B::addressNumber, 4711},
                 {B::bankName, "Volksbank"},
                 {B::accountNumber, "815"}});
  user.Chooses(2);
  std::string second = whole_;
  second.replace(second.find("Sparkasse"), std::string("Sparkasse|300 501 10|47 11").size(),
                 "Volksbank||815");
  ExpectRecord(second);
  const ShownDialog dialog = user.OnlyDialog();
  EXPECT_EQ(dialog.title, "Bankverbindung auswählen");
  EXPECT_EQ(dialog.Control(IDC_CHOICE_REASON).text,
            "Zum ausgewählten Adressant wurden mehrere Bankverbindungen angelegt ! ");
  EXPECT_EQ(dialog.Control(IDC_CHOICE_REQUEST).text, "Bitte wählen Sie eine Bankverbindung aus.");
  EXPECT_THAT(dialog.List().lines, ElementsAre("Sparkasse\t47 11\t", "Volksbank\t815\t"));

  user.Cancels();
  ExpectRecord(whole_);  // whatever an earlier call chose
  user.Does([&](OpenDialog& open) {
    open.DoubleClick(IDC_BANK_LINES, 1);
    EXPECT_TRUE(open.IsOpen());
    open.Press(IDC_TAKE);
  });
  ExpectRecord(second);
  user.Dialogs();
}

TEST_F(AddressReadingTest, DialogIsEmptyWhenTheDataPathVanishes) {
  office.Has<P>(Contact(101, "Meier"));
  manager.Meanwhile(btrieve::kGetNext, "ZTPART.KRV", [&] { office.IsNotConfigured("DataRoot"); });
  user.Does([&](OpenDialog& open) {
    EXPECT_THAT(open.Look().Control(IDC_CONTACT_LINES).lines, IsEmpty());
    open.Press(IDC_TAKE);
  });
  ExpectRecord(whole_);
  EXPECT_THAT(user.Messages(), ElementsAre(NoDataPath("Adressadaten")));
  user.Dialogs();
}

TEST_F(AddressReadingTest, DropsABlockThatTheRecordManagerCannotRead) {
  manager.Answers(btrieve::kGetNext, "ZTPART.KRV", btrieve::kIoError);
  manager.Answers(btrieve::kGetNext, "ZTBANK.KRV", btrieve::kIoError);
  ExpectRecord(
      "Königsallee 12 a|40212|Düsseldorf|40001|Postfach|Hinterhaus|österreichisch|"
      "z. Hd. Frau Weiß|bestellt 2001|Vormund");
}

TEST_F(AddressReadingTest, DeliversAnEmptyTextWithoutDataPathOrFiles) {
  office.Lacks<TitleRecord>();
  ExpectRecord("");
  EXPECT_THAT(manager.CallTexts(),
              ElementsAre("Open ZTPART.KRV", "Open ZTKOFPAR.KRV", "Open ZTKOTITL.KRV",
                          "Close ZTKOFPAR.KRV", "Close ZTPART.KRV"));
  office.IsNotConfigured("DataRoot");
  ExpectRecord("");
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTKOTITL.KRV"), NoDataPath("Adressadaten")));
}

TEST_F(AddressReadingTest, KeepsItsFieldsWhenALookupFileIsMissing) {
  office.Lacks<NationalityRecord>();
  office.Lacks<AddressLinkRecord>();
  office.Lacks<CaseRecord>();
  std::string expected = RecordWith("Müller", "", "||");
  expected.replace(expected.find("österreichisch"), std::string("österreichisch").size(), "");
  ExpectRecord(expected);
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTCASE.KRV"), CannotOpen("ZTKONAT.KRV"),
                                           CannotOpen("ZTADTOAD.KRV")));
}

TEST_F(AddressReadingTest, RefusesARecordThatIsOneByteTooLong) {
  const auto with = [](char character, std::size_t size) { return std::string(size, character); };
  office.Changes<P>(P::byNumber, 100,
                    {{P::name, ""},
                     {P::nameAddition, with('a', 360)},
                     {P::freeText, with('f', 300)},
                     {P::wideField, with('w', 75)}});
  CallerBuffer shorter;
  library->ALesenDLL("12345678", "4711", shorter, "815");
  const std::size_t room = 1018 - shorter.Record().size();

  office.Changes<P>(P::byNumber, 100, {{P::name, with('n', room)}});
  CallerBuffer longest;
  EXPECT_EQ(library->ALesenDLL("12345678", "4711", longest, "815"), -1);
  EXPECT_EQ(longest.Record().size(), 1018U);

  office.Changes<P>(P::byNumber, 100, {{P::name, with('n', room + 1)}});
  CallerBuffer untouched;
  EXPECT_EQ(library->ALesenDLL("12345678", "4711", untouched, "815"), 0);
  EXPECT_THAT(untouched, IsUntouched());
  EXPECT_THAT(user.Messages(), ElementsAre(TooMuchData()));
}

TEST_F(AddressReadingTest, IsSoundWhicheverCallFails) {
  ExpectSoundWhicheverCallFails(
      [&](char* b) { return library->ALesenDLL("12345678", "4711", b, "815"); }, {0, -1});
}

}  // namespace
}  // namespace qlx99::tests
