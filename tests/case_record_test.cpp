// SLesenDLL.
#include <bit>
#include <cfenv>
#include <cstdio>
#include <limits>

#include "cases/amount.h"
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using C = CaseRecord;

// No number; whoever lets floating-point exceptions through stops at it.
constexpr auto kStopsComputing = (0x7FFULL << 52) + 1;

std::string Formatted(double amount) {
  ResultLine record;
  FormatAmount({std::bit_cast<std::uint64_t>(amount)}, record);
  return std::string(record.Bytes());
}

// Without its points, it is what the formatted print gives.
void ExpectAsPrinted(double amount) {
  std::array<char, 320> printed{};
  std::snprintf(printed.data(), printed.size(), "%.2f|", amount);
  std::string field = Formatted(amount);
  std::erase(field, '.');
  std::replace(field.begin(), field.end(), ',', '.');
  EXPECT_EQ(field, printed.data());
}

TEST(Amount, IsWrittenAsInAGermanLetter) {
  const std::pair<double, const char*> cases[] = {
      {12, "12,00|"},
      {999.999, "1.000,00|"},
      {-1234.5, "-1.234,50|"},
      {-123.45, "-123,45|"},
      {-123456789.0, "-123.456.789,00|"},
      {-1e16, "-10000.000.000.000.000,00|"},
      {std::numeric_limits<double>::infinity(), "|"},
      {std::bit_cast<double>(~0ULL), "|"},
  };
  for (const auto& [amount, field] : cases) EXPECT_EQ(Formatted(amount), field);
}

TEST(Amount, IsExactHoweverGreatOrSmall) {
  for (int i = -2000; i <= 2000; ++i) {
    ExpectAsPrinted(i / 8.0);  // every other one lies in the middle between two cents
    ExpectAsPrinted(i / 1000.0);
  }
  for (std::uint64_t exponent = 0; exponent < 0x7FF; exponent += 23) {
    for (const std::uint64_t fraction :
         {0ULL, 1ULL, 0x8'0000'0000'0000ULL, 0xF'FFFF'FFFF'FFFFULL}) {
      ExpectAsPrinted(std::bit_cast<double>(exponent << 52 | fraction));
    }
  }
  for (int power = -12; power <= 70; ++power) ExpectAsPrinted(std::ldexp(-0.7, power));
  ExpectAsPrinted(std::numeric_limits<double>::max());
  ExpectAsPrinted(-0.0);
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

// With the floating-point units as a host may leave them: what is no number, a division by zero and
// an overflow stop the program, results are rounded up and to single precision, and the x87's stack
// is full.
std::string InOddState(const std::function<std::string()>& call) {
  constexpr std::uint16_t kOddX87Control = 0x0832;
  constexpr std::uint32_t kOddSseControl = 0x5900;
  std::fenv_t before{};
  std::fegetenv(&before);
  for (int i = 0; i < 8; ++i) asm volatile("fld1");
  asm volatile("fldcw %0" : : "m"(kOddX87Control));
  asm volatile("ldmxcsr %0" : : "m"(kOddSseControl));
  std::string outcome = call();
  asm volatile("fninit");
  std::fesetenv(&before);
  return outcome;
}

TEST_F(CaseRecordTest, SaysTheAmountWhateverStateTheHostComputesIn) {
  const std::pair<std::uint64_t, const char*> amounts[] = {
      {std::bit_cast<std::uint64_t>(1234567.891), "|1.234.567,89|01.01.2000|"},
      {kStopsComputing, "|Verkehrsrecht||01.01.2000|"}};
  for (const auto& [bits, shown] : amounts) {
    office.ChangesBytes<C>(C::byId, 7, C::amount.offset,
                           {reinterpret_cast<const char*>(&bits), sizeof bits});
    EXPECT_THAT(InOddState([&] { return Case(); }), HasSubstr(shown));
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
