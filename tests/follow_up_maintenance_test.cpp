// WVNew, WVChange and WVDelete: what they refuse and in which order, and what they write.
#include <gtest/gtest.h>

#include "cases/case_file.h"
#include "followups/follow_up_file.h"
#include "store/dates.h"
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using C = CaseRecord;
using F = FollowUpRecord;

const MessageBox kInvalidFollowUp = Invalid("Geben Sie bitte eine gültige Wiedervorlage an !");
const MessageBox kInvalidUser = Invalid("Geben Sie bitte einen gültigen Benutzer an !");
const MessageBox kNoDateGiven = Invalid("Geben Sie bitte ein Datum an !");
const MessageBox kInvalidDate = Invalid("Geben Sie bitte ein gültiges Datum an !");
const MessageBox kTextTooLong =
    Invalid("Der Text der Wiedervorlage darf höchstens 150 Zeichen lang sein !");
const MessageBox kNoPathToCase = NoDataPath("Wiedervorlagedaten");
const MessageBox kNoPathToFollowUps{
    "Datenpfad nicht gefunden !\n Wiedervorlagedaten können nicht gelöscht werden ! ",
    "Systemmeldung !", MB_ICONHAND};

const std::string kLongestText(150, 'x');
const std::string kTooLongText(151, 'x');

// The arguments of a write that succeeds; each test spoils some of them.
struct Arguments {
  const char* key;  // case number or follow-up ID
  const char* kind = "3";
  const char* date = "31.12.2050";
  const char* user = "17";
  const char* secondUser = "18";
  const char* party = "501";
  const char* text = "Stellungnahme";
};

class FollowUpMaintenanceTest : public ScriptedExportTest {
 protected:
  FollowUpMaintenanceTest() {
    office.Has<C>({{C::id, 7}, {C::caseNumber, "12345678"}});
    office.Has<F>({{F::id, 40}, {F::caseId, 8}, {F::text, "alt"}, {F::kindId, 1}, {F::flag, "0"}});
  }

  std::int32_t New(const Arguments& a) {
    return library->WVNew(a.key, a.kind, a.date, a.user, a.secondUser, a.party, a.text);
  }
  std::int32_t Change(const Arguments& a) {
    return library->WVChange(a.key, a.kind, a.date, a.user, a.secondUser, a.party, a.text);
  }
  Record<F> FollowUp(std::size_t index) { return office.Records<F>().at(index); }
};

void ExpectWritten(const Record<F>& record, std::int32_t id, std::int32_t caseId) {
  EXPECT_EQ(record[F::id], id);
  EXPECT_EQ(record[F::caseId], caseId);
  EXPECT_EQ(record[F::date], DayNumberFromDate(31, 12, 2050));
  EXPECT_EQ(record[F::kindId], 3);
  EXPECT_EQ(record[F::text], "Stellungnahme" + std::string(137, ' '));
  EXPECT_EQ(record[F::userId], 17);
  EXPECT_EQ(record[F::secondUserId], 18);
  EXPECT_EQ(record[F::partyRecordId], 501);
  EXPECT_EQ(record[F::flag], "1");
}

TEST_F(FollowUpMaintenanceTest, NewFollowUpIsWrittenWholeAndListed) {
  EXPECT_EQ(New({"12345678"}), -1);
  EXPECT_THAT(manager.CallTexts(),
              ElementsAre("Open ZTCASE.KRV", "GetEqual ZTCASE.KRV 1", "Close ZTCASE.KRV",
                          "Open ZTDOLIST.KRV", "Insert ZTDOLIST.KRV 0", "Close ZTDOLIST.KRV"));
  const auto record = FollowUp(1);
  ExpectWritten(record, 41, 7);
  EXPECT_EQ(std::string(record.bytes.begin() + 177, record.bytes.end()), std::string(37, '\0'));
  CallerBuffer buffer;
  EXPECT_EQ(library->WVInit("12345678"), 1);
  EXPECT_EQ(library->WVNext("12345678", "1", buffer), -1);
  EXPECT_TRUE(buffer.Record().ends_with("|41")) << "the assigned follow-up ID";
}

TEST_F(FollowUpMaintenanceTest, ChangeKeepsTheCaseAndTheBytesOfOthers) {
  const auto before = FollowUp(0);
  EXPECT_EQ(Change({"40"}), -1);
  EXPECT_THAT(manager.CallTexts(), ElementsAre("Open ZTDOLIST.KRV", "GetEqual ZTDOLIST.KRV 0",
                                               "Update ZTDOLIST.KRV 0", "Close ZTDOLIST.KRV"));
  const auto after = FollowUp(0);
  ExpectWritten(after, 40, 8);
  EXPECT_TRUE(
      std::equal(before.bytes.begin() + 177, before.bytes.end(), after.bytes.begin() + 177));
}

TEST_F(FollowUpMaintenanceTest, DeleteRemovesOneFollowUpOnce) {
  office.Has<F>({{F::id, 41}, {F::caseId, 8}});
  EXPECT_EQ(library->WVDelete(" 40x"), -1);
  EXPECT_EQ(library->WVDelete("40"), 0);
  EXPECT_THAT(office.Records<F>(), SizeIs(1));
  EXPECT_EQ(FollowUp(0)[F::id], 41);
}

// The first thing wrong is the one message shown, and nothing is written.
TEST_F(FollowUpMaintenanceTest, NewRefusesInItsOwnOrder) {
  const struct {
    Arguments arguments;
    std::vector<MessageBox> messages;
  } rows[] = {
      {{.key = "00000000", .kind = "0", .user = "0"}, {}},
      {{.key = nullptr}, {}},
      {{.key = "12345678", .kind = "0", .date = "", .user = "0"}, {kInvalidFollowUp}},
      {{.key = "12345678", .kind = nullptr}, {kInvalidFollowUp}},
      {{.key = "12345678", .date = "", .user = "x"}, {kInvalidUser}},
      {{.key = "12345678", .date = "1.2.2003", .text = kTooLongText.c_str()}, {kNoDateGiven}},
      {{.key = "12345678", .date = nullptr}, {kNoDateGiven}},
      {{.key = "12345678", .date = "32.01.2003", .text = kTooLongText.c_str()}, {kInvalidDate}},
      {{.key = "12345678", .text = kTooLongText.c_str()}, {kTextTooLong}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(New(row.arguments), 0);
    EXPECT_EQ(user.Messages(), row.messages);
  }
  EXPECT_THAT(office.Records<F>(), SizeIs(1));
}

TEST_F(FollowUpMaintenanceTest, ChangeAndDeleteRefuseInTheirOwnOrder) {
  const struct {
    Arguments arguments;
    std::vector<MessageBox> messages;
  } rows[] = {
      {{.key = "0", .kind = "0", .user = "0"}, {kInvalidFollowUp}},
      {{.key = "0"}, {}},
      {{.key = "40", .date = "", .user = "0"}, {kInvalidUser}},
      {{.key = "40", .date = "01.01.03"}, {kNoDateGiven}},
      {{.key = "40", .date = "01.13.2003"}, {kInvalidDate}},
      {{.key = "40", .text = kTooLongText.c_str()}, {kTextTooLong}},
      {{.key = "99"}, {}},
  };
  const auto before = FollowUp(0);
  for (const auto& row : rows) {
    EXPECT_EQ(Change(row.arguments), 0);
    EXPECT_EQ(user.Messages(), row.messages);
  }
  for (const char* id : {"0", "", "x"}) {
    EXPECT_EQ(library->WVDelete(id), 0);
    EXPECT_THAT(user.Messages(), ElementsAre(kInvalidFollowUp));
  }
  EXPECT_EQ(library->WVDelete(nullptr), 0);
  EXPECT_THAT(user.Messages(), ElementsAre(kInvalidFollowUp));
  EXPECT_EQ(FollowUp(0).bytes, before.bytes);
}

TEST_F(FollowUpMaintenanceTest, AcceptsWhatIsOnlyUnusual) {
  EXPECT_EQ(New({.key = "12345678", .kind = "-1", .user = "-5"}), -1);
  EXPECT_EQ(New({.key = "12345678", .text = kLongestText.c_str()}), -1);
  EXPECT_EQ(Change({.key = "40", .kind = "0"}), -1);
  EXPECT_EQ(FollowUp(0)[F::kindId], 0);
  EXPECT_EQ(FollowUp(1)[F::kindId], -1);
  EXPECT_EQ(FollowUp(2)[F::text], kLongestText);
}

TEST_F(FollowUpMaintenanceTest, TakesDatesAsTheyStand) {
  const struct {
    const char* text;
    int dayNumber;  // -1: refused
  } rows[] = {
      {"31.12.2050", 55151},
      {"01.01.2051", -1},
      {"32.12.2050", -1},
      {"31.13.2050", -1},
      {"00.00.0000", DayNumberFromDate(0, 0, 0)},
      {"31.02.2003", 37681},
      {"01/01/2000 and more", 36524},
      {"-1.01.2000", DayNumberFromDate(-1, 1, 2000)},
      {"01.01.1900", 0},
      {"31.12.1899", 65535},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(Change({.key = "40", .date = row.text}), row.dayNumber < 0 ? 0 : -1);
    if (row.dayNumber < 0) {
      EXPECT_THAT(user.Messages(), ElementsAre(kInvalidDate));
    } else {
      EXPECT_EQ(FollowUp(0)[F::date], row.dayNumber);
    }
  }
}

TEST_F(FollowUpMaintenanceTest, WithoutADataPathEachSaysSoAtItsPlace) {
  office.IsNotConfigured("DataRoot");
  EXPECT_EQ(New({.key = "12345678", .kind = "0"}), 0);
  EXPECT_EQ(Change({.key = "40"}), 0);
  EXPECT_EQ(library->WVDelete("40"), 0);
  EXPECT_THAT(user.Messages(), ElementsAre(kNoPathToCase, kNoPathToFollowUps, kNoPathToFollowUps));
}

// Each of them looks for the record manager at a place of its own among its checks.
TEST_F(ExportTest, FollowUpWritersAskForTheRecordManagerInTheirTurn) {
  const MessageBox notLoaded{
      "Die Datenbank Schnittstelle Pervasie.SQL / Btrieve konnte nicht geladen werden",
      "Systemmeldung", MB_OK};
  ReleaseEmbedded();
  managers.Are({});
  library->WVNew("12345678", "0", "", "0", "", "", "");
  library->WVChange("40", "3", "", "17", "", "", "");
  library->WVChange("40", "3", "", "0", "", "", "");
  library->WVDelete("0");
  library->WVDelete("40");
  EXPECT_THAT(user.Messages(),
              ElementsAre(notLoaded, notLoaded, kInvalidUser, kInvalidFollowUp, notLoaded));
}

TEST_F(FollowUpMaintenanceTest, NothingIsWrittenOverAnothersChange) {
  manager.Meanwhile(btrieve::kUpdate, "ZTDOLIST.KRV", [&] {
    office.Changes<F>(F::byId, 40, {{F::text, "von nebenan"}});
  });
  EXPECT_EQ(Change({"40"}), 0);
  EXPECT_TRUE(FollowUp(0)[F::text].starts_with("von nebenan"));

  manager.Forget();
  manager.Meanwhile(btrieve::kDelete, "ZTDOLIST.KRV", [&] {
    office.Changes<F>(F::byId, 40, {{F::text, "noch einmal"}});
  });
  EXPECT_EQ(library->WVDelete("40"), 0);
  EXPECT_TRUE(FollowUp(0)[F::text].starts_with("noch einmal"));
}

TEST_F(FollowUpMaintenanceTest, IsSoundWhicheverCallFails) {
  ExpectSoundWhicheverCallFails([&](char*) { return New({"12345678"}); }, {0, -1});
  ExpectSoundWhicheverCallFails([&](char*) { return Change({"40"}); }, {0, -1});
  ExpectSoundWhicheverCallFails(
      [&](char*) {
        office.Has<F>({{F::id, 0}, {F::caseId, 9}});
        const auto newest = std::to_string(office.Records<F>().back()[F::id]);
        return library->WVDelete(newest.c_str());
      },
      {0, -1});
}

// Whatever is acknowledged is there, whatever is refused is not.
TEST_F(FollowUpMaintenanceTest, AcknowledgesExactlyWhatWasWritten) {
  for (std::size_t n = 1; n <= 6; ++n) {
    const std::size_t before = office.Records<F>().size();
    manager.Forget();
    manager.FailsCall(n, btrieve::kIoError);
    const bool acknowledged = New({"12345678"}) == -1;
    EXPECT_THAT(office.Records<F>(), SizeIs(before + (acknowledged ? 1 : 0))) << "call " << n;
    user.Messages();
  }
}

}  // namespace
}  // namespace qlx99::tests
