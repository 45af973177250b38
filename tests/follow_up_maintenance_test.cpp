// WVNew, WVChange and WVDelete: what they refuse and in which order, and what they write.
#include "followups/follow_up_file.h"
#include "store/dates.h"
#include "support/example_office.h"
#include "support/world.h"
#include "tests/recordmanager/worker.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using F = FollowUpRecord;

const MessageBox kInvalidFollowUp = Invalid("Geben Sie bitte eine gültige Wiedervorlage an !");
const MessageBox kInvalidUser = Invalid("Geben Sie bitte einen gültigen Benutzer an !");
const MessageBox kNoDateGiven = Invalid("Geben Sie bitte ein Datum an !");
const MessageBox kInvalidDate = Invalid("Geben Sie bitte ein gültiges Datum an !");
const MessageBox kTextTooLong =
    Invalid("Der Text der Wiedervorlage darf höchstens 150 Zeichen lang sein !");

const std::string kLongestText(150, 'x');
const std::string kPaddedText = kLongestText + std::string(2000, ' ');
// One character too many; nothing can be read behind it.
const std::string kTooLongTexts[] = {kLongestText + 'x', kPaddedText + 'x',
                                     std::string(150, ' ') + 'x'};

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

class FollowUpMaintenanceTest : public ExampleOfficeTest {
 protected:
  std::int32_t New(const Arguments& a) {
    return library->WVNew(a.key, a.kind, a.date, a.user, a.secondUser, a.party, a.text);
  }
  std::int32_t Change(const Arguments& a) {
    return library->WVChange(a.key, a.kind, a.date, a.user, a.secondUser, a.party, a.text);
  }
  // By their order in the file, which is that of their IDs.
  Record<F> FollowUp(std::size_t index) { return office.Records<F>().at(index); }

  static void ExpectWritten(const Record<F>& record, std::int32_t id) {
    EXPECT_EQ(record[F::id], id);
    EXPECT_EQ(record[F::caseId], 7);
    EXPECT_EQ(record[F::date], 55151);
    EXPECT_EQ(record[F::kindId], 3);
    EXPECT_EQ(record[F::text], "Stellungnahme" + std::string(137, ' '));
    EXPECT_EQ(record[F::userId], 17);
    EXPECT_EQ(record[F::secondUserId], 18);
    EXPECT_EQ(record[F::partyRecordId], 501);
    EXPECT_EQ(record[F::flag], "1");
  }
};

TEST_F(FollowUpMaintenanceTest, WriteAFollowUpWhole) {
  EXPECT_EQ(New({"12345678"}), -1);
  const auto written = FollowUp(3);
  ExpectWritten(written, 4);
  EXPECT_EQ(std::string(written.bytes.begin() + 177, written.bytes.end()), std::string(37, '\0'));

  const auto before = FollowUp(0);
  EXPECT_EQ(Change({"1"}), -1);
  const auto after = FollowUp(0);
  ExpectWritten(after, 1);
  EXPECT_TRUE(std::equal(before.bytes.begin() + 177, before.bytes.end(), after.bytes.begin() + 177))
      << "the bytes of others";

  EXPECT_EQ(library->WVDelete(" 2x"), -1);
  EXPECT_EQ(library->WVDelete("2"), 0);
  EXPECT_THAT(office.Records<F>(), SizeIs(3));
  EXPECT_EQ(FollowUp(1)[F::id], 3);
}

// The first thing wrong is the one message shown, and nothing is written.
TEST_F(FollowUpMaintenanceTest, RefuseEachInAnOrderOfTheirOwn) {
  const char* const tooLong = world::AtPageEnd(kTooLongTexts[0]);
  struct Refused {
    Arguments arguments;
    std::vector<MessageBox> messages;
  };
  const Refused news[] = {
      {{.key = "00000000", .kind = "0", .user = "0"}, {}},
      {{.key = nullptr}, {}},
      {{.key = "12345678", .kind = "0", .date = "", .user = "0"}, {kInvalidFollowUp}},
      {{.key = "12345678", .kind = nullptr}, {kInvalidFollowUp}},
      {{.key = "12345678", .date = "", .user = "x"}, {kInvalidUser}},
      {{.key = "12345678", .date = "1.2.2003", .text = tooLong}, {kNoDateGiven}},
      {{.key = "12345678", .date = nullptr}, {kNoDateGiven}},
      {{.key = "12345678", .date = "32.01.2003", .text = tooLong}, {kInvalidDate}},
      {{.key = "12345678", .text = tooLong}, {kTextTooLong}},
  };
  const Refused changes[] = {
      {{.key = "0", .kind = "0", .user = "0"}, {kInvalidFollowUp}},
      {{.key = "0"}, {}},
      {{.key = "1", .date = "", .user = "0"}, {kInvalidUser}},
      {{.key = "1", .date = "01.01.03"}, {kNoDateGiven}},
      {{.key = "1", .date = "01.13.2003"}, {kInvalidDate}},
      {{.key = "1", .text = tooLong}, {kTextTooLong}},
      {{.key = "99"}, {}},
  };
  const auto before = FollowUp(0);
  for (const std::string& text : kTooLongTexts) {
    EXPECT_EQ(New({.key = "12345678", .text = world::AtPageEnd(text)}), 0);
    EXPECT_THAT(user.Messages(), ElementsAre(kTextTooLong));
  }
  for (const auto& [arguments, messages] : news) {
    EXPECT_EQ(New(arguments), 0);
    EXPECT_EQ(user.Messages(), messages);
  }
  for (const auto& [arguments, messages] : changes) {
    EXPECT_EQ(Change(arguments), 0);
    EXPECT_EQ(user.Messages(), messages);
  }
  for (const char* id : {"0", "", "x", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(library->WVDelete(id), 0);
    EXPECT_THAT(user.Messages(), ElementsAre(kInvalidFollowUp));
  }
  EXPECT_THAT(office.Records<F>(), SizeIs(3));
  EXPECT_EQ(FollowUp(0).bytes, before.bytes);
}

TEST_F(FollowUpMaintenanceTest, AcceptWhatIsOnlyUnusual) {
  EXPECT_EQ(New({.key = "12345678", .kind = "-1", .user = "-5"}), -1);
  EXPECT_EQ(New({.key = "12345678", .text = kLongestText.c_str()}), -1);
  EXPECT_EQ(New({.key = "12345678", .text = kPaddedText.c_str()}), -1);
  EXPECT_EQ(Change({.key = "1", .kind = "0"}), -1);
  EXPECT_EQ(FollowUp(0)[F::kindId], 0);
  EXPECT_EQ(FollowUp(3)[F::kindId], -1);
  EXPECT_EQ(FollowUp(4)[F::text], kLongestText);
  EXPECT_EQ(FollowUp(5)[F::text], kLongestText);
}

TEST_F(FollowUpMaintenanceTest, TakeDatesAsTheyStand) {
  const std::pair<const char*, int> rows[] = {// day number; -1: refused
                                              {"31.12.2050", 55151},
                                              {"01.01.2051", -1},
                                              {"32.12.2050", -1},
                                              {"31.13.2050", -1},
                                              {"00.00.0000", DayNumberOf({0, 0, 0})},
                                              {"31.02.2003", 37681},
                                              {"01/01/2000 and more", 36524},
                                              {"-1.01.2000", DayNumberOf({-1, 1, 2000})},
                                              {"01.01.1900", 0},
                                              {"31.12.1899", 65535}};
  for (const auto& [text, dayNumber] : rows) {
    SCOPED_TRACE(text);
    const bool refused = dayNumber < 0;
    EXPECT_EQ(Change({.key = "1", .date = text}), refused ? 0 : -1);
    EXPECT_EQ(user.Messages(), refused ? std::vector{kInvalidDate} : std::vector<MessageBox>{});
    if (!refused) {
      EXPECT_EQ(FollowUp(0)[F::date], dayNumber);
    }
  }
}

// Each of them looks for the record manager at a place of its own among its checks.
TEST_F(FollowUpMaintenanceTest, AskForTheRecordManagerInTheirTurn) {
  const MessageBox notLoaded = NoRecordManager();
  UnloadRecordManagers();
  managers.Are({});
  New({.key = "12345678", .kind = "0", .date = "", .user = "0"});
  Change({.key = "1", .date = ""});
  Change({.key = "1", .user = "0"});
  library->WVDelete("0");
  library->WVDelete("1");
  EXPECT_THAT(user.Messages(),
              ElementsAre(notLoaded, notLoaded, kInvalidUser, kInvalidFollowUp, notLoaded));
}

TEST_F(FollowUpMaintenanceTest, NeedTheDataPathForEachFileAnew) {
  manager.Meanwhile(btrieve::kClose, "ZTCASE.KRV", [&] { office.IsNotConfigured("DataRoot"); });
  EXPECT_EQ(New({"12345678"}), 0);
  EXPECT_THAT(user.Messages(),
              ElementsAre(MessageBox{
                  "Datenpfad nicht gefunden !\n Wiedervorlagedaten können nicht gelöscht werden ! ",
                  "Systemmeldung !", MB_ICONHAND}));
}

// Another process changes or removes the record after the library has read it.
TEST_F(FollowUpMaintenanceTest, WriteNothingOverAnotherWorkstationsChange) {
  const std::string file = (office.DataFolder() / F::file.name).string();
  const auto meanwhile = [&](WORD operation, const char* script) {
    manager.Meanwhile(operation, F::file.name, [file, script] {
      EXPECT_EQ(recordmanager_tests::Worker({file, script}).Wait(), 0);
    });
  };
  const std::string text(FollowUp(0)[F::text]);
  meanwhile(btrieve::kUpdate, "equal number=1, count, update");  // an integer within the text
  EXPECT_EQ(Change({"1"}), 0);
  const auto changed = FollowUp(0);
  EXPECT_NE(changed[F::text], text);
  meanwhile(btrieve::kDelete, "equal number=1, update");
  EXPECT_EQ(library->WVDelete("1"), 0);
  EXPECT_EQ(FollowUp(0).bytes, changed.bytes);

  meanwhile(btrieve::kUpdate, "equal number=1, delete");
  EXPECT_EQ(Change({"1"}), 0);
  meanwhile(btrieve::kDelete, "equal number=2, delete");
  EXPECT_EQ(library->WVDelete("2"), 0);
  EXPECT_THAT(office.Records<F>(), SizeIs(1));
}

}  // namespace
}  // namespace qlx99::tests
