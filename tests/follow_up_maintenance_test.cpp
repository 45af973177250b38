// WVNew, WVChange and WVDelete: what they refuse and in which order, and what they write. And
// dates, as all exports store and write them.
#include <chrono>

#include "store/dates.h"
#include "support/export_test.h"
#include "tests/recordmanager/party_file.h"

namespace qlx99::tests {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
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
const std::string kBlankText(150, ' ');

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
  using Write = std::function<std::int32_t(const Arguments&)>;
  const Write New = [this](const Arguments& a) {
    return library->WVNew(a.key, a.kind, a.date, a.user, a.secondUser, a.party, a.text);
  };
  const Write Change = [this](const Arguments& a) {
    return library->WVChange(a.key, a.kind, a.date, a.user, a.secondUser, a.party, a.text);
  };
  const Write Delete = [this](const Arguments& a) { return library->WVDelete(a.key); };

  // By their order in the file, which is that of their IDs.
  Record<F> FollowUp(std::size_t index) { return office.Records<F>().at(index); }

  // Its fields but the ID, and the bytes of others behind them.
  std::pair<std::string, std::string> Content(std::size_t index) {
    const auto record = FollowUp(index);
    const std::string bytes(record.bytes.begin(), record.bytes.end());
    return {bytes.substr(4, 173), bytes.substr(177)};
  }
};

TEST_F(FollowUpMaintenanceTest, WriteAFollowUpWhole) {
  office.Has<F>(
      "caseId: 7, date: 31.12.2050, kindId: 3, text: Stellungnahme, userId: 17, secondUserId: 18, "
      "partyRecordId: 501, flag: 1");
  const std::string fields = Content(3).first;
  EXPECT_EQ(New({"12345678"}), -1);
  EXPECT_EQ(FollowUp(4)[F::id], 5);
  EXPECT_EQ(Content(4), std::pair(fields, std::string(37, '\0')));
  const std::string others = Content(0).second;
  EXPECT_EQ(Change({"1"}), -1);
  EXPECT_EQ(Content(0), std::pair(fields, others));

  EXPECT_EQ(library->WVDelete(" 2x"), -1);
  EXPECT_EQ(library->WVDelete("2"), 0);
  EXPECT_THAT(office.Records<F>(), SizeIs(4));
  EXPECT_EQ(FollowUp(0)[F::id], 1);
  EXPECT_EQ(FollowUp(1)[F::id], 3);
}

// The first thing wrong is the one message shown, and nothing is written.
TEST_F(FollowUpMaintenanceTest, RefuseEachInAnOrderOfTheirOwn) {
  // Nothing can be read behind it.
  const char* const tooLong = Unterminated(kLongestText + 'x');
  const struct {
    Write write;
    Arguments arguments;
    std::vector<MessageBox> messages;
  } rows[] = {
      {New, {.key = "00000000", .kind = "0", .user = "0"}, {}},
      {New, {.key = nullptr}, {}},
      {New, {.key = "12345678", .kind = "0", .date = "", .user = "0"}, {kInvalidFollowUp}},
      {New, {.key = "12345678", .kind = nullptr}, {kInvalidFollowUp}},
      {New, {.key = "12345678", .date = "", .user = "x"}, {kInvalidUser}},
      {New, {.key = "12345678", .date = "1.2.2003", .text = tooLong}, {kNoDateGiven}},
      {New, {.key = "12345678", .date = nullptr}, {kNoDateGiven}},
      {New, {.key = "12345678", .date = "32.01.2003", .text = tooLong}, {kInvalidDate}},
      {New, {.key = "12345678", .text = tooLong}, {kTextTooLong}},
      {New, {.key = "12345678", .text = Unterminated(kPaddedText + 'x')}, {kTextTooLong}},
      {New, {.key = "12345678", .text = Unterminated(kBlankText + 'x')}, {kTextTooLong}},
      {Change, {.key = "0", .kind = "0", .user = "0"}, {kInvalidFollowUp}},
      {Change, {.key = "0"}, {}},
      {Change, {.key = "1", .date = "", .user = "0"}, {kInvalidUser}},
      {Change, {.key = "1", .date = "01.01.03"}, {kNoDateGiven}},
      {Change, {.key = "1", .date = "01.13.2003"}, {kInvalidDate}},
      {Change, {.key = "1", .text = tooLong}, {kTextTooLong}},
      {Change, {.key = "99"}, {}},
      {Delete, {.key = "0"}, {kInvalidFollowUp}},
      {Delete, {.key = "x"}, {kInvalidFollowUp}},
      {Delete, {.key = nullptr}, {kInvalidFollowUp}},
  };
  const auto before = FollowUp(0);
  for (const auto& [write, arguments, messages] : rows) {
    EXPECT_EQ(write(arguments), 0);
    EXPECT_EQ(user.Messages(), messages);
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
  constexpr int kRefused = -1;
  const std::pair<const char*, int> rows[] = {{"31.12.2050", 55151},
                                              {"01.01.2051", kRefused},
                                              {"32.12.2050", kRefused},
                                              {"31.13.2050", kRefused},
                                              {"00.00.0000", DayNumberOf({0, 0, 0})},
                                              {"31.02.2003", 37681},
                                              {"01/01/2000 and more", 36524},
                                              {"-1.01.2000", DayNumberOf({-1, 1, 2000})},
                                              {"01.01.1900", 0},
                                              {"31.12.1899", 65535}};
  for (const auto& [text, dayNumber] : rows) {
    office.Changes<F>(F::byId, 1, "date: 02.01.2000");
    const bool refused = dayNumber == kRefused;
    EXPECT_EQ(Change({.key = "1", .date = text}), refused ? 0 : -1) << text;
    EXPECT_EQ(user.Messages(), std::vector(refused ? 1 : 0, kInvalidDate)) << text;
    EXPECT_EQ(FollowUp(0)[F::date], refused ? 36525 : dayNumber) << text;
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

// Another process changes or removes the record after the library has read it.
TEST_F(FollowUpMaintenanceTest, WriteNothingOverAnotherWorkstationsChange) {
  const std::string file = (office.DataFolder() / F::file.name).string();
  const std::string before = Content(0).first;
  const struct {
    Write write;
    const char* id;
    WORD operation;
    const char* script;
  } rows[] = {{Change, "1", btrieve::kUpdate, "equal number=1, update counter=1"},
              {Delete, "1", btrieve::kDelete, "equal number=1, update"},
              {Change, "2", btrieve::kUpdate, "equal number=2, delete"},
              {Delete, "3", btrieve::kDelete, "equal number=3, delete"}};
  for (const auto& [write, id, operation, script] : rows) {
    manager.Meanwhile(operation, F::file.name, [&, text = script] {
      EXPECT_EQ(recordmanager_tests::Worker(file, text).Wait(), 0);
    });
    EXPECT_EQ(write({id}), 0) << script;
  }
  EXPECT_THAT(office.Records<F>(), SizeIs(1));
  // The counter lies within the text.
  EXPECT_THAT(Content(0).first, Not(AnyOf(before, HasSubstr("Stellungnahme"))));
}

TEST(DayNumbers, AgreeWithTheCalendarInBothDirections) {
  using namespace std::chrono;
  constexpr sys_days kDayZero = 1900y / January / 1;
  for (std::uint16_t number = 0; number < kNoDate; ++number) {
    const year_month_day date = kDayZero + days(number);
    const auto day = static_cast<int>(static_cast<unsigned>(date.day()));
    const auto month = static_cast<int>(static_cast<unsigned>(date.month()));
    const auto year = static_cast<int>(date.year());
    std::array<char, 16> expected{};
    std::snprintf(expected.data(), expected.size(), "%02d.%02d.%04d", day, month, year);
    ASSERT_EQ(FormatDay(number).Bytes(), expected.data());
    ASSERT_EQ(DayNumberOf({day, month, year}), number);
  }
  EXPECT_EQ(DayNumberOf({31, 12, 1899}), kNoDate);
  EXPECT_EQ(FormatDay(kNoDate).Bytes(), "");
}

}  // namespace
}  // namespace qlx99::tests
