// WVInit, WVNext, ZtkodoliInit and ZtkodoliNext: reading follow-ups and their kinds.
#include <gtest/gtest.h>

#include "caseparties/case_party_file.h"
#include "cases/case_file.h"
#include "followups/follow_up_file.h"
#include "followups/follow_up_kind_file.h"
#include "store/dates.h"
#include "support/export_test.h"
#include "users/user_file.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;
using C = CaseRecord;
using F = FollowUpRecord;
using K = FollowUpKindRecord;
using P = CasePartyRecord;
using U = UserRecord;

constexpr std::uint16_t kDay = 36525;  // 02.01.2000

class FollowUpListTest : public ScriptedExportTest {
 protected:
  FollowUpListTest() {
    office.Has<C>({{C::id, 7}, {C::caseNumber, "12345678"}});
    office.Has<C>({{C::id, 8}, {C::caseNumber, "12345679"}});
    office.Has<K>({{K::id, 3}, {K::name, "Frist prüfen"}, {K::number, 30}});
    office.Has<U>({{U::number, 17}, {U::name, "Meier"}, {U::shortSign, "MEI"}});
    office.Has<P>({{P::id, 501}, {P::caseId, 7}});
    office.Has<P>({{P::id, 502}, {P::caseId, 7}});
    office.Has<F>({{F::id, 1},
                   {F::caseId, 7},
                   {F::date, kDay},
                   {F::kindId, 3},
                   {F::text, "Berufung begründen"},
                   {F::userId, 17},
                   {F::partyRecordId, 502}});
    office.Has<F>({{F::id, 2}, {F::caseId, 8}, {F::date, kDay}, {F::kindId, 3}});
    office.Has<F>({{F::id, 3},
                   {F::caseId, 7},
                   {F::date, kNoDate},
                   {F::kindId, -7},
                   {F::userId, 99},
                   {F::secondUserId, 17},
                   {F::partyRecordId, 999}});
  }
};

TEST_F(FollowUpListTest, CountsTheFollowUpsOfTheCaseAlone) {
  EXPECT_EQ(library->WVInit("12345678"), 2);
  EXPECT_EQ(library->WVInit("12345679XY"), 1) << "a ninth character does not count";
  EXPECT_EQ(library->WVInit("00000000"), 0);
  EXPECT_EQ(library->WVInit(nullptr), 0);
}

TEST_F(FollowUpListTest, DeliversTheFollowUpAtEachPosition) {
  const std::string first = "02.01.2000|Frist prüfen|3|Berufung begründen|Meier|MEI|17|||0|2|1";
  const std::string second =
      "||-7||||99|Meier|MEI|17|0|3";  // no date, and a kind and a party that are not there
  const struct {
    const char* index;
    const std::string& record;
    int result;
  } rows[] = {{"1", first, -1},  {"2", second, 0}, {"0", first, -1},
              {"-5", first, -1}, {"x", first, -1}, {nullptr, first, -1}};
  for (const auto& row : rows) {
    CallerBuffer buffer;
    EXPECT_EQ(library->WVNext("12345678", row.index, buffer), row.result);
    EXPECT_THAT(buffer, HoldsRecordOnly(row.record));
  }
}

TEST_F(FollowUpListTest, WritesNothingBeyondTheLastFollowUp) {
  for (const char* caseNumber : {"12345678", "00000000"}) {
    CallerBuffer buffer;
    EXPECT_EQ(library->WVNext(caseNumber, "3", buffer), -1);
    EXPECT_THAT(buffer, IsUntouched());
    buffer[0] = buffer[1] = '|';
    EXPECT_EQ(library->WVNext(caseNumber, "3", buffer), 0);
  }
  EXPECT_EQ(library->WVNext("12345678", "1", nullptr), 0);
}

TEST_F(FollowUpListTest, ReadsInOneFixedOrder) {
  CallerBuffer buffer;
  library->WVNext("12345678", "1", buffer);
  EXPECT_THAT(manager.CallTexts(),
              ElementsAre("Open ZTCASE.KRV", "Open ZTDOLIST.KRV", "GetEqual ZTCASE.KRV 1",
                          "GetEqual ZTDOLIST.KRV 1",                                             //
                          "Open ZTKODOLI.KRV", "GetEqual ZTKODOLI.KRV 0", "Close ZTKODOLI.KRV",  //
                          "Open ZTUSER.KRV", "GetEqual ZTUSER.KRV 0", "Close ZTUSER.KRV",        //
                          "Open ZTUSER.KRV", "GetEqual ZTUSER.KRV 0", "Close ZTUSER.KRV",        //
                          "Open ZTHEAD.KRV", "GetEqual ZTHEAD.KRV 1", "GetNext ZTHEAD.KRV 1",
                          "Close ZTHEAD.KRV", "Close ZTDOLIST.KRV", "Close ZTCASE.KRV"));
}

TEST_F(FollowUpListTest, KeepsItsFieldsWhenALookupFileIsMissing) {
  office.Lacks<K>();
  office.Lacks<U>();
  office.Lacks<P>();
  CallerBuffer buffer;
  EXPECT_EQ(library->WVNext("12345678", "1", buffer), -1);
  EXPECT_THAT(buffer, HoldsRecordOnly("02.01.2000||3|Berufung begründen|||17|||0|0|1"));
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTKODOLI.KRV"), CannotOpen("ZTUSER.KRV"),
                                           CannotOpen("ZTUSER.KRV"), CannotOpen("ZTHEAD.KRV")));
}

TEST_F(FollowUpListTest, SaysWhichDataCannotBeTakenWithoutADataPath) {
  office.IsNotConfigured("DataRoot");
  CallerBuffer buffer;
  EXPECT_EQ(library->WVInit("12345678"), 0);
  EXPECT_EQ(library->WVNext("12345678", "1", buffer), -1);
  EXPECT_EQ(library->ZtkodoliInit(), 0);
  EXPECT_EQ(library->ZtkodoliNext("1", buffer), -1);
  EXPECT_THAT(buffer, IsUntouched());
  EXPECT_THAT(user.Messages(),
              ElementsAre(NoDataPath("Wiedervorlagedaten"), NoDataPath("Adressadaten"),
                          NoDataPath("User"), NoDataPath("Wiedervorlagedaten")));
}

TEST_F(FollowUpListTest, IsSoundWhicheverCallFails) {
  ExpectSoundWhicheverCallFails([&](char*) { return library->WVInit("12345678"); }, {0, 1, 2});
  ExpectSoundWhicheverCallFails([&](char* b) { return library->WVNext("12345678", "2", b); },
                                {0, -1});
  ExpectSoundWhicheverCallFails([&](char*) { return library->ZtkodoliInit(); }, {0, 1});
  ExpectSoundWhicheverCallFails([&](char* b) { return library->ZtkodoliNext("1", b); }, {-1});
}

TEST_F(FollowUpListTest, ListsTheKindsInTheOrderOfTheirIds) {
  office.Has<K>({{K::id, -2}, {K::name, ""}, {K::number, 5}});
  EXPECT_EQ(library->ZtkodoliInit(), 2);
  const struct {
    const char* index;
    const char* record;
  } rows[] = {
      {"1", "|5|-2"}, {"2", "Frist prüfen|30|3"}, {"0", "|5|-2"}, {"-1", "|5|-2"}, {"3", ""}};
  for (const auto& row : rows) {
    CallerBuffer buffer;
    EXPECT_EQ(library->ZtkodoliNext(row.index, buffer), -1);
    EXPECT_THAT(buffer, HoldsRecordOnly(row.record));
  }
}

}  // namespace
}  // namespace qlx99::tests
