// SLesenDLL.
#include <limits>

#include "addresses/party_files.h"
#include "caseparties/case_party_file.h"
#include "cases/amount.h"
#include "cases/case_code_files.h"
#include "cases/case_file.h"
#include "support/export_test.h"
#include "users/user_file.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;
using C = CaseRecord;

std::string Formatted(double amount) {
  ResultRecord record;
  FormatAmount(amount, record);
  return std::string(record.Bytes());
}

TEST(Amount, IsWrittenAsInAGermanLetter) {
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
      {1234567890.0, "1.234.567.890,00|"},
      {123456789012.0, "123.456.789.012,00|"},
      {1234567890123.0, "1.234.567.890.123,00|"},
      {1e15, "1000.000.000.000.000,00|"},
      {1e16, "10000.000.000.000.000,00|"},
      {-1e16, "-10000.000.000.000.000,00|"},
      {std::numeric_limits<double>::quiet_NaN(), "|"},
      {-std::numeric_limits<double>::infinity(), "|"},
  };
  for (const auto& [amount, field] : cases) EXPECT_EQ(Formatted(amount), field);
  EXPECT_EQ(Formatted(std::numeric_limits<double>::max()).size(), 309 + 4 + 4U);
}

const FieldValues kCase{
    {C::id, 7},
    {C::caseNumber, "12345678"},
    {C::userId, 17},
    {C::shortCode, "ZR 1"},
    {C::rubrum, "Müller ./. Schmidt"},
    {C::firstDate, 36524},
    {C::secondDate, 65535},
    {C::amount, 1234.5},
    {C::longText, "wegen Verkehrsunfalls"},
    {C::text30, "dreißig"},
    {C::caseTypeId, 3},
    {C::archiveEntryId, 5},
    {C::text40, "vierzig"},
    {C::currency, "EUR"},
};

// The case, with some of its fields otherwise.
FieldValues CaseWith(const FieldValues& others) {
  FieldValues values = kCase;
  values.insert(values.end(), others.begin(), others.end());
  return values;
}

class CaseRecordTest : public ScriptedExportTest {
 protected:
  // All that the case refers to.
  void SetUp() override {
    office.Has<UserRecord>(
        {{UserRecord::number, 17}, {UserRecord::name, "Meier"}, {UserRecord::shortSign, "MEI"}});
    office.Has<CaseTypeRecord>({{CaseTypeRecord::id, 3}, {CaseTypeRecord::text, "Verkehrsrecht"}});
    office.Has<ArchiveRecord>({{ArchiveRecord::id, 5},
                               {ArchiveRecord::mark,
                                "\x8E-\xE1"
                                "2"},  // in code page 850
                               {ArchiveRecord::date, 37000}});
    for (const std::int32_t caseId : {7, 8, 7}) {
      const auto party = static_cast<std::int32_t>(office.Records<CasePartyRecord>().size() + 1);
      office.Has<CasePartyRecord>(
          {{CasePartyRecord::id, party}, {CasePartyRecord::caseId, caseId}});
    }
  }

  void ExpectRecord(const char* caseNumber, const std::string& record, std::int32_t result = -1) {
    CallerBuffer buffer;
    EXPECT_EQ(library->SLesenDLL(caseNumber, buffer), result) << caseNumber;
    EXPECT_THAT(buffer, HoldsRecordWithEndMark(record)) << caseNumber;
  }
};

TEST_F(CaseRecordTest, SaysAllOfACase) {
  office.Has<C>(kCase);
  const std::string record =
      "Müller ./. Schmidt|vierzig|dreißig|ZR 1|Verkehrsrecht|1.234,50|01.01.2000||"
      "wegen Verkehrsunfalls|Meier|MEI|21.04.2001|Ä-ß2|2|EUR";
  ExpectRecord("12345678", record);
  ExpectRecord("1234567890", record);  // the first 8 characters count
  ExpectRecord("12345678 und noch viel mehr", record);
}

TEST_F(CaseRecordTest, OpensEachFileOnlyAsLongAsItNeedsIt) {
  office.Has<C>(kCase);
  CallerBuffer buffer;
  library->SLesenDLL("12345678", buffer);
  std::vector<std::string> texts = manager.CallTexts();
  const std::vector<std::string> closes(texts.end() - 3, texts.end());
  texts.resize(texts.size() - 3);
  EXPECT_THAT(texts,
              ElementsAre("Open ZTCASE.KRV", "GetEqual ZTCASE.KRV 1",                         //
                          "Open ZTTCASE.KRV", "GetEqual ZTTCASE.KRV 0", "Close ZTTCASE.KRV",  //
                          "Open ZTUSER.KRV", "GetEqual ZTUSER.KRV 0", "Close ZTUSER.KRV",     //
                          "Open ZTABLAG.KRV", "GetEqual ZTABLAG.KRV 0", "Close ZTABLAG.KRV",  //
                          "Close ZTCASE.KRV",                                                 //
                          "Open ZTCASE.KRV", "Open ZTHEAD.KRV", "Open ZTKOFPAR.KRV",          //
                          "GetEqual ZTCASE.KRV 1", "GetEqual ZTHEAD.KRV 1", "GetNext ZTHEAD.KRV 1",
                          "GetNext ZTHEAD.KRV 1"));
  EXPECT_THAT(closes, testing::UnorderedElementsAre("Close ZTCASE.KRV", "Close ZTHEAD.KRV",
                                                    "Close ZTKOFPAR.KRV"));
}

TEST_F(CaseRecordTest, LeavesEmptyWhatTheOfficeDoesNotHave) {
  office.Has<C>({{C::id, 9},
                 {C::caseNumber, "00000009"},
                 {C::rubrum, "R"},
                 {C::userId, 99},
                 {C::caseTypeId, -3},
                 {C::firstDate, 0},
                 {C::secondDate, 65534}});
  ExpectRecord("00000009", "R|||||0,00|01.01.1900|05.06.2079||||||0|");
}

TEST_F(CaseRecordTest, GivesCurrencyUpToAZeroByteAndWithoutBlanks) {
  using std::string_view_literals::operator""sv;
  const struct {
    const char* caseNumber;
    std::string_view stored;
    const char* shown;
  } cases[] = {{"00000001", "EUR", "EUR"}, {"00000002", "DM\0"sv, "DM"},
               {"00000003", "DM ", "DM"},  {"00000004", "\0\0\0"sv, ""},
               {"00000005", "   ", ""},    {"00000006", "\0UR"sv, ""},
               {"00000007", "£  ", "£"}};
  std::int32_t id = 100;
  for (const auto& [caseNumber, stored, shown] : cases) {
    office.Has<C>(
        {{C::id, ++id}, {C::caseNumber, caseNumber}, {C::rubrum, "R"}, {C::currency, stored}});
    ExpectRecord(caseNumber, std::string("R|||||0,00|01.01.1900|01.01.1900||||||0|") + shown);
  }
}

TEST_F(CaseRecordTest, KnowsAnUnknownCaseOnlyByItsPartyCount) {
  office.Has<C>(kCase);
  CallerBuffer buffer;
  EXPECT_EQ(library->SLesenDLL("12345678", buffer), -1);
  for (const char* caseNumber : {"87654321", "1234567", "", "  345678"}) {
    ExpectRecord(caseNumber, "0|");  // and nothing of the last case's currency
  }
}

TEST_F(CaseRecordTest, GivesZeroForACaseWithoutTitleAndText) {
  office.Has<C>(CaseWith({{C::rubrum, ""}, {C::text40, ""}}));
  ExpectRecord("12345678",
               "||dreißig|ZR 1|Verkehrsrecht|1.234,50|01.01.2000||wegen Verkehrsunfalls|Meier|MEI|"
               "21.04.2001|Ä-ß2|2|EUR",
               0);
}

TEST_F(CaseRecordTest, EndsAtAZeroByteInAText) {
  office.Has<C>(CaseWith({{C::rubrum, std::string_view("Mül\0ler", 8)}}));
  ExpectRecord("12345678", "Mül|EUR");
}

TEST_F(CaseRecordTest, CountsNoPartiesOfCaseZero) {
  office.Has<CasePartyRecord>({{CasePartyRecord::id, 9}, {CasePartyRecord::caseId, 0}});
  office.Has<C>({{C::id, 0}, {C::caseNumber, "00000000"}, {C::rubrum, "R"}});
  ExpectRecord("00000000", "R|||||0,00|01.01.1900|01.01.1900||||||0|");
}

TEST_F(CaseRecordTest, KeepsItsFieldsWhenACodeFileIsMissing) {
  office.Has<C>(CaseWith({{C::longText, ""}, {C::text30, ""}}));
  office.Lacks<CaseTypeRecord>();
  office.Lacks<UserRecord>();
  office.Lacks<ArchiveRecord>();
  office.Lacks<RelationRecord>();
  ExpectRecord("12345678", "Müller ./. Schmidt|vierzig||ZR 1||1.234,50|01.01.2000|||||||0|EUR");
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTTCASE.KRV"), CannotOpen("ZTUSER.KRV"),
                                           CannotOpen("ZTABLAG.KRV"), CannotOpen("ZTKOFPAR.KRV")));
}

TEST_F(CaseRecordTest, DeliversABareBarWhenNothingCanBeRead) {
  office.Lacks<C>();
  ExpectRecord("12345678", "|");
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTCASE.KRV")));

  office.IsNotConfigured("DataRoot");
  ExpectRecord("12345678", "|");
  EXPECT_THAT(user.Messages(), ElementsAre(NoDataPath("Aktendaten")));

  library.Free();
  UnloadRecordManagers();
  managers.Are({});
  ExpectRecord("12345678", "|");
  EXPECT_EQ(user.Messages().size(), 1U);
}

TEST_F(CaseRecordTest, IsSoundWhicheverCallFails) {
  office.Has<C>(kCase);
  ExpectSoundWhicheverCallFails(
      [&](char* buffer) { return library->SLesenDLL("12345678", buffer); }, {-1});
}

}  // namespace
}  // namespace qlx99::tests
