// How fields, dates, numbers and result records are written, whatever the export.
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <string>

#include "frame/arguments.h"
#include "store/dates.h"
#include "store/result_record.h"
#include "support/caller_buffer.h"
#include "support/user.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;

TEST(EndField, ReplacesTrailingBlanksByOneBar) {
  const struct {
    std::string stored;
    std::string bytes;  // of the whole field, afterwards
    std::size_t count;
  } cases[] = {
      {"Meier     ", {"Meier|\0\0\0\0?", 11}, 6},
      {"A         ", {"A|\0\0\0\0\0\0\0\0?", 11}, 2},
      {"          ", {"|\0\0\0\0\0\0\0\0\0?", 11}, 1},
      {"ten bytes!", "ten bytes!|", 11},
      {" Meier  X ", {" Meier  X|?", 11}, 10},
      {{"DM\0       ", 10}, {"DM\0|\0\0\0\0\0\0?", 11}, 4},  // a zero byte is no blank
      {{"\0\0\0\0\0\0\0\0\0\0", 10}, {"\0\0\0\0\0\0\0\0\0\0|", 11}, 11},
  };
  for (const auto& [stored, bytes, count] : cases) {
    std::string field = stored + '?';
    EXPECT_EQ(EndField(field.data(), stored.size()), count) << stored;
    // Behind the bar, zero bytes; behind the field, nothing changes unless the bar needs the place.
    EXPECT_EQ(field, bytes) << stored;
  }
}

std::string Formatted(const std::string& dayText) {
  std::array<char, 16> dest{};
  const std::size_t count = FormatDayNumber(dayText.c_str(), dest.data());
  EXPECT_EQ(std::string(dest.data()).size(), count) << dayText;
  return {dest.data(), count};
}

TEST(DayNumbers, AgreeWithTheCalendarInBothDirections) {
  using namespace std::chrono;
  constexpr sys_days kDayZero = 1900y / January / 1;
  for (int number = 0; number < kNoDate; ++number) {
    const year_month_day date = kDayZero + days(number);
    const auto day = static_cast<int>(static_cast<unsigned>(date.day()));
    const auto month = static_cast<int>(static_cast<unsigned>(date.month()));
    std::array<char, 16> expected{};
    std::snprintf(expected.data(), expected.size(), "%02d.%02d.%04d|", day, month,
                  static_cast<int>(date.year()));
    ASSERT_EQ(Formatted(std::to_string(number)), expected.data());
    ASSERT_EQ(DayNumberFromDate(day, month, static_cast<int>(date.year())), number);
  }
}

TEST(DayNumbers, AreWrittenFromTheirLowSixteenBits) {
  const std::pair<const char*, const char*> cases[] = {
      {"0", "01.01.1900|"},     {"58", "28.02.1900|"},
      {"59", "01.03.1900|"},    {"36525", "02.01.2000|"},
      {"37000", "21.04.2001|"}, {"65534", "05.06.2079|"},
      {"65535", "|"},           {"65536", "01.01.1900|"},
      {"131071", "|"},          {"-1", "|"},
      {"", "01.01.1900|"}};
  for (const auto& [dayText, field] : cases) EXPECT_EQ(Formatted(dayText), field) << dayText;
}

TEST(DayNumbers, HaveNoneForADayBeforeTheFirst) {
  EXPECT_EQ(DayNumberFromDate(31, 12, 1899), kNoDate);
}

TEST(LeadingNumbers, EndWhereTheDigitsDo) {
  const std::pair<const char*, std::int32_t> cases[] = {{"17", 17},
                                                        {"  17", 17},
                                                        {"\t17", 17},
                                                        {"+17", 17},
                                                        {"-17", -17},
                                                        {"17abc", 17},
                                                        {"17 18", 17},
                                                        {"007", 7},
                                                        {"0x11", 0},
                                                        {"", 0},
                                                        {" ", 0},
                                                        {"abc", 0},
                                                        {"-", 0},
                                                        {"- 17", 0},
                                                        {"--17", 0},
                                                        {"1.5", 1},
                                                        {"1,5", 1},
                                                        {"+", 0},
                                                        {"a17", 0},
                                                        {"2147483647", 2147483647},
                                                        {"-0", 0},
                                                        {"2147483648", 2147483647},
                                                        {"-2147483648", -2147483647 - 1},
                                                        {"99999999999999999999", 2147483647},
                                                        {"-99999999999999999999", -2147483647 - 1}};
  for (const auto& [text, number] : cases) EXPECT_EQ(LeadingNumber(text), number) << text;
  EXPECT_EQ(LeadingNumber(static_cast<const char*>(nullptr)), 0);
}

// A record of that many bytes.
ResultRecord RecordOf(std::size_t length) {
  ResultRecord record;
  record.Append(std::string(length, 'x'));
  return record;
}

class HandOverTest : public testing::Test {
 protected:
  void TearDown() override { user.ExpectNothingLeft(); }

  User user;
  CallerBuffer buffer;
};

TEST_F(HandOverTest, TakesNoMoreOfTheBufferThanItsForm) {
  for (const std::size_t length : {0U, 1U, 1017U, 1018U}) {
    CallerBuffer plain;
    CallerBuffer marked;
    EXPECT_EQ(HandOver(RecordOf(length), plain, HandOverForm::kRecordOnly), -1);
    EXPECT_EQ(HandOver(RecordOf(length), marked, HandOverForm::kWithEndMark), -1);
    EXPECT_THAT(plain, HoldsRecordOnly(std::string(length, 'x')));
    EXPECT_THAT(marked, HoldsRecordWithEndMark(std::string(length, 'x')));
  }
}

TEST_F(HandOverTest, RefusesAnOverlongRecordInBothForms) {
  for (const auto form : {HandOverForm::kRecordOnly, HandOverForm::kWithEndMark}) {
    for (const std::size_t length : {1019U, 1500U, 2000U}) {
      EXPECT_EQ(HandOver(RecordOf(length), buffer, form), 0);
      EXPECT_THAT(user.Messages(), ElementsAre(TooMuchData()));
      EXPECT_THAT(buffer, IsUntouched());
    }
  }
}

TEST_F(HandOverTest, GivesZeroWhenTheBufferThenBeginsWithTwoEmptyFields) {
  const std::pair<const char*, std::int32_t> cases[] = {
      {"||", 0}, {"||x", 0}, {"|", -1}, {"|x|", -1}, {"x||", -1}};
  for (const auto& [text, result] : cases) {
    for (const auto form : {HandOverForm::kRecordOnly, HandOverForm::kWithEndMark}) {
      ResultRecord record;
      record.Append(text);
      CallerBuffer fresh;
      EXPECT_EQ(HandOver(record, fresh, form), result) << text;
      EXPECT_EQ(fresh.Record(), text);
    }
  }
  // What the caller had there before counts as well.
  EXPECT_EQ(HandOver(ResultRecord(), buffer, HandOverForm::kRecordOnly), -1);
  char* const bytes = buffer;
  bytes[0] = bytes[1] = '|';
  EXPECT_EQ(HandOver(ResultRecord(), buffer, HandOverForm::kRecordOnly), 0);
}

TEST_F(HandOverTest, EndsTheRecordAtAZeroByteThatAFileBrought) {
  ResultRecord record;
  record.AddField({"a\0b  ", 5});
  EXPECT_EQ(HandOver(record, buffer, HandOverForm::kWithEndMark), -1);
  EXPECT_THAT(buffer, HoldsRecordWithEndMark("a"));
}

TEST_F(HandOverTest, GivesZeroForANullBuffer) {
  EXPECT_EQ(HandOver(RecordOf(3), nullptr, HandOverForm::kWithEndMark), 0);
}

}  // namespace
}  // namespace qlx99::tests
