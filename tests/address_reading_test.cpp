// ALesenDLL: 25 fields of an address, and the dialogs in which the user chooses among several
// contact persons or bank connections.
#include "resources/resource.h"
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;
using A = AddressRecord;
using B = BankConnectionRecord;
using P = ContactPersonRecord;

class AddressReadingTest : public ExampleOfficeTest {
 protected:
  std::string Address(const char* number = "4711", const char* link = "815",
                      const char* caseNumber = "12345678") {
    return OutcomeOf([&](char* b) { return library->ALesenDLL(caseNumber, number, b, link); });
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
  office.Has<P>("number: 101, addressNumber: 4710, name: Meier");
  EXPECT_EQ(Address("4710"), "-1 |Meier" + std::string(23, '|') + "<end>");
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
  std::vector<std::string> lines{"Müller\tJörg\t"};
  std::vector<std::string> outcomes{whole_};
  for (const auto& [number, name] :
       {std::pair("256", std::string("Meier")), {"65536", longest}, {"-1", "Schulze"}}) {
    office.Has<P>(std::string("number: ") + number + ", addressNumber: 4711, name: " + name +
                  ", firstName: Eva, salutationNumber: 1");
    lines.push_back(name + "\tEva\t");
    outcomes.push_back(With({.contact = "Eva|" + name + "|Sehr geehrte Familie||||||||||"}));
  }
  for (std::size_t i = 4; i-- > 0;) {
    user.Chooses(static_cast<int>(i) + 1);
    EXPECT_EQ(Address(), outcomes[i]);
  }
  const ShownDialog dialog = user.Dialogs().front();
  EXPECT_EQ(dialog.title, "Ansprechpartner auswählen");
  EXPECT_EQ(dialog.List().selected, 0);
  EXPECT_EQ(dialog.List().lines, lines);
  EXPECT_GT(dialog.List().horizontalExtent, 115 * 4) << "the first name behind the longest name";
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
  EXPECT_THAT(dialog.List().lines, ElementsAre("Sparkasse\t47 11\t", "Volksbank\t815\t"));
  user.Cancels();
  EXPECT_EQ(Address(), whole_) << "whatever an earlier call chose";
}

TEST_F(AddressReadingTest, SaysNothingOfAChosenRecordThatIsGone) {
  const std::string file = B::file.name;
  office.Has<B>("number: 202, addressNumber: 4713, bankName: eines Fremden");
  office.Has<B>("number: 256, addressNumber: 4711, bankName: Volksbank");
  const std::string none = With({.bank = ""});
  const std::pair<std::function<void()>, std::string> rows[] = {
      // A search that does not even begin leaves the first record.
      {[&] { manager.Answers(btrieve::kGetEqual, file, btrieve::kEndOfFile, 1); }, whole_},
      {[&] { manager.Answers(btrieve::kGetEqual, file, btrieve::kKeyNotFound, 1); }, none},
      {[&] { manager.Answers(btrieve::kGetNext, file, btrieve::kEndOfFile, 1); }, none},
      {[&] { office.Changes<B>(B::byNumber, 256, "number: 257"); }, none},
      {[&] { office.Changes<B>(B::byNumber, 257, "addressNumber: 4712"); }, none}};
  for (const auto& [happens, outcome] : rows) {
    user.Does([&meanwhile = happens](OpenDialog& dialog) {
      dialog.Select(IDC_BANK_LINES, 1);
      meanwhile();
      dialog.Press(IDC_TAKE);
    });
    EXPECT_EQ(Address(), outcome);
  }
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
  const std::size_t whole = 1018 + std::string("-1 <end>").size();
  const std::size_t room = whole - Ansi(Address()).size();
  office.Changes<P>(P::byNumber, 100, "name: " + text(room));
  EXPECT_EQ(Ansi(Address()).size(), whole);
  office.Changes<P>(P::byNumber, 100, "name: " + text(room + 1));
  EXPECT_EQ(Address(), "0 ");
  EXPECT_THAT(user.Messages(), ElementsAre(TooMuchData()));
}

}  // namespace
}  // namespace qlx99::tests
