// SLesenDLL.
#include <limits>

#include "addresses/party_files.h"
#include "caseparties/case_party_file.h"
#include "cases/amount.h"
#include "cases/case_code_files.h"
#include "cases/case_file.h"
#include "support/example_office.h"
#include "users/user_file.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;
using C = CaseRecord;

TEST(Amount, IsWrittenAsInAGermanLetter) {
  using Limits = std::numeric_limits<double>;
  const auto formatted = [](double amount) {
    ResultRecord record;
    FormatAmount(amount, record);
    return std::string(record.Bytes());
  };
  const std::pair<double, const char*> cases[] = {
      {0, "0,00|"},
      {12, "12,00|"},
      {999.99, "999,99|"},
      {999.999, "1.000,00|"},
      {1234.5, "1.234,50|"},
      {-1234.5, "-1.234,50|"},
      {-123.45, "-123,45|"},
      {-0.5, "-0,50|"},
      {999999.99, "999.999,99|"},
      {1000000, "1.000.000,00|"},
      {1234567.891, "1.234.567,89|"},
      {-123456789.0, "-123.456.789,00|"},
      {1234567890123.0, "1.234.567.890.123,00|"},
      {1e15, "1000.000.000.000.000,00|"},
      {-1e16, "-10000.000.000.000.000,00|"},
      {Limits::quiet_NaN(), "|"},
      {-Limits::infinity(), "|"},
  };
  for (const auto& [amount, field] : cases) EXPECT_EQ(formatted(amount), field);
  EXPECT_EQ(formatted(Limits::max()).size(), 309 + 4 + 4U);
}

class CaseRecordTest : public ExampleOfficeTest {
 protected:
  std::string Case(const char* caseNumber = "12345678") {
    return OutcomeOf([&](char* b) { return library->SLesenDLL(caseNumber, b); });
  }

  // The record of the example's case behind its two titles, without its currency.
  const std::string rest_ =
      "dreißig|ZR 1|Verkehrsrecht|1.234,50|01.01.2000||wegen Verkehrsunfalls|Meier|MEI|21.04.2001|"
      "Ä-ß2|4|";
};

TEST_F(CaseRecordTest, SaysAllOfACase) {
  const std::string whole = "-1 Müller ./. Schmidt|vierzig|" + rest_ + "EUR<end>";
  EXPECT_EQ(Case(), whole);
  EXPECT_EQ(Case("1234567890 und noch viel mehr"), whole) << "the first 8 characters count";
  // An unknown case is known by its party count alone, without the last case's currency.
  for (const char* caseNumber : {"87654321", "1234567", "", "  345678"}) {
    EXPECT_EQ(Case(caseNumber), "-1 0|<end>") << caseNumber;
  }
}

TEST_F(CaseRecordTest, LeavesEmptyWhatTheOfficeDoesNotHave) {
  using std::string_literals::operator""s;
  const std::pair<std::string, const char*> currencies[] = {
      {"EUR", "EUR"}, {"DM\0"s, "DM"}, {"DM ", "DM"}, {"\0\0\0"s, ""},
      {"   ", ""},    {"\0UR"s, ""},   {"£  ", "£"}};
  office.Has<C>(
      "id: 9, caseNumber: 00000009, rubrum: R, userId: 99, caseTypeId: -3, secondDate: 05.06.2079");
  for (const auto& [stored, shown] : currencies) {
    office.Changes<C>(C::byId, 9, std::string("currency: ") + stored);
    EXPECT_EQ(Case("00000009"), std::string("-1 R|||||0,00||05.06.2079||||||0|") + shown + "<end>");
  }
  office.Changes<C>(C::byId, 7, "rubrum: , text40: ");
  EXPECT_EQ(Case(), "0 ||" + rest_ + "EUR<end>");
  office.Changes<C>(C::byId, 7, "rubrum: Mül\0ler"s);
  EXPECT_EQ(Case(), "-1 Mül|EUR<end>") << "ends at a zero byte in a text";
  // The number 0 stands for no case, whose parties are not counted.
  office.Has<CasePartyRecord>("id: 9, caseId: 0");
  office.Has<C>("id: 0, caseNumber: 00000000, rubrum: R");
  EXPECT_EQ(Case("00000000"), "-1 R|||||0,00||||||||0|<end>");
}

// Byte for byte from the DOS code page, by lookalikes where there is no such character.
TEST_F(CaseRecordTest, KeepsTheArchiveMarksFiveCharacters) {
  for (const auto& [mark, shown] :
       {std::pair("äöüßé", "äöüßé"), std::pair("§ƒ½µÿ", "§ƒ½µÿ"), std::pair("A─│╔ı", "A-¦+i")}) {
    office.Changes<ArchiveRecord>(ArchiveRecord::byId, 5, std::string("mark: ") + mark);
    EXPECT_THAT(Case(), testing::HasSubstr(std::string("|21.04.2001|") + shown + "|4|EUR"));
  }
}

TEST_F(CaseRecordTest, KeepsItsFieldsWhenAFileIsMissing) {
  office.Lacks<CaseTypeRecord>();
  office.Lacks<UserRecord>();
  office.Lacks<ArchiveRecord>();
  office.Lacks<RelationRecord>();
  EXPECT_EQ(Case(),
            "-1 Müller ./. Schmidt|vierzig|dreißig|ZR 1||1.234,50|01.01.2000||wegen "
            "Verkehrsunfalls|||||0|EUR<end>");
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTTCASE.KRV"), CannotOpen("ZTUSER.KRV"),
                                           CannotOpen("ZTABLAG.KRV"), CannotOpen("ZTKOFPAR.KRV")));
  office.Lacks<C>();
  EXPECT_EQ(Case(), "-1 |<end>");
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTCASE.KRV")));
}

}  // namespace
}  // namespace qlx99::tests
