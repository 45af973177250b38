// ALesenDLL: 25 fields of an address, and the dialogs in which the user chooses among several
// contact persons or bank connections.
#include "addresses/address_file.h"
#include "addresses/address_link_file.h"
#include "addresses/bank_connection_file.h"
#include "addresses/contact_person_file.h"
#include "addresses/nationality_file.h"
#include "addresses/title_file.h"
#include "caseparties/case_party_file.h"
#include "cases/case_file.h"
#include "resources/resource.h"
#include "support/example_office.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using A = AddressRecord;
using B = BankConnectionRecord;
using P = ContactPersonRecord;

class AddressReadingTest : public ExampleOfficeTest {
 protected:
  std::string Address(const char* number = "4711", const char* link = "815",
                      const char* caseNumber = "12345678") {
    return OutcomeOf([&](char* b) { return library->ALesenDLL(caseNumber, number, b, link); });
  }

  void HasContact(const std::string& number, const std::string& name) {
    office.Has<P>("number: " + number + ", addressNumber: 4711, name: " + name +
                  ", firstName: Eva, salutationNumber: 1");
  }

  // The outcome for the example's address, with these of its parts otherwise.
  struct Parts {
    std::string contact = "Jörg|Müller|Sehr geehrter Herr|Dr.|GmbH|frei|1|2|3|4|5|weit|";
    std::string addition = "Hinterhaus";
    std::string nationality = "österreichisch";
    std::string bank = "Sparkasse|300 501 10|47 11|";
    std::string link = "z. Hd. Frau Weiß|bestellt 2001|Vormund";
  };
  static std::string With(const Parts& p) {
    return "-1 " + p.contact + "Königsallee 12 a|40212|Düsseldorf|40001|Postfach|" + p.addition +
           "|" + p.nationality + "|" + p.bank + p.link + "<end>";
  }

  const std::string whole_ = With({});
  const std::string withoutParty_ = With({.addition = "", .link = "||"});
};

TEST_F(AddressReadingTest, DeliversTheAddressAsTheCaseKnowsIt) {
  EXPECT_EQ(Address(), whole_);
  // Without a link number it is the one that was given last.
  EXPECT_EQ(Address("4711", "0"), With({.addition = "unten", .link = "ohne Link||"}));
  EXPECT_EQ(Address("4711", "815"), whole_);
  EXPECT_EQ(Address("4711", nullptr), whole_);
  EXPECT_EQ(Address("4711", "816"), withoutParty_);
  EXPECT_EQ(Address("4711", nullptr), withoutParty_);
  EXPECT_EQ(Address("4711", "no number"), With({.addition = "unten", .link = "ohne Link||"}));
  EXPECT_EQ(Address("4711", "815", "00000000"), withoutParty_);
  EXPECT_EQ(Address("4711", "815", nullptr), withoutParty_);
}

TEST_F(AddressReadingTest, LeavesFieldsEmptyForWhatIsNotThere) {
  EXPECT_EQ(Address("4710"), "0 " + std::string(24, '|') + "<end>");
  EXPECT_EQ(Address("4712"), "-1 |Groß & Klein|||||||||||Am Weg ||Köln||||||||||<end>");
  EXPECT_EQ(library->ALesenDLL("12345678", "4711", nullptr, "815"), 0);
  // The address's salutation is for a contact person without one, not for one whose is missing.
  const std::pair<std::string, const char*> salutations[] = {
      {"0", "Sehr geehrte Familie"}, {"2", "Sehr geehrter Herr"}, {"77", ""}};
  for (const auto& [number, text] : salutations) {
    office.Changes<P>(P::byNumber, 100, "salutationNumber: " + number + ", titleNumber: 0");
    EXPECT_EQ(Address(), With({.contact = std::string("Jörg|Müller|") + text +
                                          "||GmbH|frei|1|2|3|4|5|weit|"}));
  }
}

TEST_F(AddressReadingTest, UserChoosesAmongSeveralContactPersons) {
  const std::string longest(115, 'n');
  HasContact("256", "Meier");
  HasContact("65536", longest);
  HasContact("-1", "Schulze");
  const std::pair<int, std::string> choices[] = {{2, "Meier"}, {3, longest}, {4, "Schulze"}};
  for (const auto& [line, name] : choices) {
    user.Chooses(line);
    EXPECT_EQ(Address(), With({.contact = "Eva|" + name + "|Sehr geehrte Familie||||||||||"}));
  }
  const ShownDialog dialog = user.Dialogs().front();
  EXPECT_EQ(dialog.title, "Ansprechpartner auswählen");
  EXPECT_EQ(dialog.Control(IDC_CHOICE_REASON).text,
            "Zum ausgewählten Adressant wurden mehrere Ansprechpartner angelegt ! ");
  EXPECT_EQ(dialog.Control(IDC_CHOICE_REQUEST).text, "Bitte wählen Sie einen Ansprechpartner aus.");
  EXPECT_EQ(dialog.Control(IDC_TAKE).text, "&Übernehmen");
  EXPECT_EQ(dialog.List().selected, 0);
  EXPECT_THAT(dialog.List().lines,
              ElementsAre("Müller\tJörg\t", "Meier\tEva\t", longest + "\tEva\t", "Schulze\tEva\t"));
  EXPECT_GT(dialog.List().horizontalExtent, 115 * 4) << "the first name behind the longest name";
  user.Chooses(1);
  EXPECT_EQ(Address(), whole_);
  user.Cancels();
  EXPECT_EQ(Address(), whole_);
}

TEST_F(AddressReadingTest, UserChoosesAmongSeveralBankConnections) {
  office.Has<B>("number: 201, addressNumber: 4711, bankName: Volksbank, accountNumber: 815");
  const std::string second = With({.bank = "Volksbank||815|"});
  user.Chooses(2);
  EXPECT_EQ(Address(), second);
  const ShownDialog dialog = user.OnlyDialog();
  EXPECT_EQ(dialog.title, "Bankverbindung auswählen");
  EXPECT_EQ(dialog.Control(IDC_CHOICE_REASON).text,
            "Zum ausgewählten Adressant wurden mehrere Bankverbindungen angelegt ! ");
  EXPECT_EQ(dialog.Control(IDC_CHOICE_REQUEST).text, "Bitte wählen Sie eine Bankverbindung aus.");
  EXPECT_THAT(dialog.List().lines, ElementsAre("Sparkasse\t47 11\t", "Volksbank\t815\t"));

  user.Cancels();
  EXPECT_EQ(Address(), whole_) << "whatever an earlier call chose";
  user.Does([&](OpenDialog& open) {
    open.DoubleClick(IDC_BANK_LINES, 1);
    EXPECT_TRUE(open.IsOpen());
    open.Press(IDC_TAKE);
  });
  EXPECT_EQ(Address(), second);
}

TEST_F(AddressReadingTest, SaysNothingOfAChosenRecordThatIsGone) {
  office.Has<B>("number: 202, addressNumber: 4713, bankName: eines Fremden");
  const auto outcomesOf = [&]<class Layout>(Layout /*of the file*/, const std::string& second) {
    office.Has<Layout>("number: 256, addressNumber: 4711, " + second);
    const std::string file = Layout::file.name;
    const std::function<void()> events[] = {
        [&] { manager.Answers(btrieve::kGetEqual, file, btrieve::kEndOfFile, 1); },
        [&] { manager.Answers(btrieve::kGetEqual, file, btrieve::kKeyNotFound, 1); },
        [&] { manager.Answers(btrieve::kGetNext, file, btrieve::kEndOfFile, 1); },
        [&] { office.Changes<Layout>(Layout::byNumber, 256, "number: 257"); },
        [&] { office.Changes<Layout>(Layout::byNumber, 257, "addressNumber: 4712"); }};
    std::vector<std::string> outcomes;
    for (const auto& happens : events) {
      user.Does([&](OpenDialog& dialog) {
        dialog.Select(dialog.Look().List().id, 1);
        happens();
        dialog.Press(IDC_TAKE);
      });
      outcomes.push_back(Address());
    }
    return outcomes;
  };
  // A search that does not even begin leaves the first record.
  const std::string noContact = With({.contact = ""});
  EXPECT_THAT(outcomesOf(P(), "name: Meier"),
              ElementsAre(whole_, noContact, noContact, noContact, noContact));
  const std::string noBank = With({.bank = ""});
  EXPECT_THAT(outcomesOf(B(), "bankName: Volksbank"),
              ElementsAre(whole_, noBank, noBank, noBank, noBank));
}

TEST_F(AddressReadingTest, DialogIsEmptyWhenTheDataPathVanishes) {
  HasContact("101", "Meier");
  manager.Meanwhile(btrieve::kGetNext, "ZTPART.KRV", [&] { office.IsNotConfigured("DataRoot"); });
  user.TakesTheSelected();
  EXPECT_EQ(Address(), whole_);
  EXPECT_THAT(user.OnlyDialog().Control(IDC_CONTACT_LINES).lines, IsEmpty());
  EXPECT_THAT(user.Messages(), ElementsAre(NoDataPath("Adressadaten")));
}

TEST_F(AddressReadingTest, DropsWhatCannotBeReadAndNothingElse) {
  manager.Answers(btrieve::kGetNext, "ZTPART.KRV", btrieve::kIoError);
  manager.Answers(btrieve::kGetNext, "ZTBANK.KRV", btrieve::kIoError);
  EXPECT_EQ(Address(), With({.contact = "", .bank = ""}));
  manager.Forget();
  office.Lacks<NationalityRecord>();
  office.Lacks<AddressLinkRecord>();
  office.Lacks<CaseRecord>();
  EXPECT_EQ(Address(), With({.addition = "", .nationality = "", .link = "||"}));
  office.Lacks<TitleRecord>();
  EXPECT_EQ(Address(), "-1 <end>") << "one of the six files of every call";
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTCASE.KRV"), CannotOpen("ZTKONAT.KRV"),
                                           CannotOpen("ZTADTOAD.KRV"), CannotOpen("ZTKOTITL.KRV")));
}

TEST_F(AddressReadingTest, RefusesARecordThatIsOneByteTooLong) {
  const auto text = [](std::size_t size) { return std::string(size, 'x'); };
  office.Changes<P>(P::byNumber, 100,
                    "name: , nameAddition: " + text(360) + ", freeText: " + text(300) +
                        ", wideField: " + text(75));
  const std::size_t overhead = std::string("-1 <end>").size();
  const std::size_t room = 1018 - Ansi(Address()).size() + overhead;
  office.Changes<P>(P::byNumber, 100, "name: " + text(room));
  EXPECT_EQ(Ansi(Address()).size(), 1018 + overhead);
  office.Changes<P>(P::byNumber, 100, "name: " + text(room + 1));
  EXPECT_EQ(Address(), "0 ");
  EXPECT_THAT(user.Messages(), ElementsAre(TooMuchData()));
}

}  // namespace
}  // namespace qlx99::tests
