// How fields, dates, numbers and results are written, whatever the export.
#include <array>
#include <chrono>
#include <string>

#include "cases/case_file.h"
#include "frame/arguments.h"
#include "store/dates.h"
#include "store/result_line.h"
#include "support/caller_buffer.h"
#include "support/user.h"
#include "support/world.h"
#include "users/user_file.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;

// A field or a key of another record does not compile, nor does a key that is declared as unused.
template <class Layout, class Field>
concept HasField = requires(const Record<Layout>& record, const Field& field) {
  record[field];
};
template <class Layout, class Key>
concept ReadsBy = requires(RecordCursor<Layout>& file, const Key& key) {
  file.GetFirst(key);
};
static_assert(HasField<CaseRecord, CaseRecord::Int32Field>);
static_assert(!HasField<UserRecord, CaseRecord::Int32Field>);
static_assert(ReadsBy<CaseRecord, CaseRecord::Key> && !ReadsBy<UserRecord, CaseRecord::Key>);
static_assert(!ReadsBy<CaseRecord, CaseRecord::UnusedKey>);

TEST(EndField, ReplacesTrailingBlanksByOneBar) {
  const struct {
    std::string stored;
    std::string bytes;  // of the whole field and one behind it, afterwards
    std::size_t count;
  } cases[] = {
      {"Meier     ", {"Meier|\0\0\0\0?", 11}, 6},
      {"          ", {"|\0\0\0\0\0\0\0\0\0?", 11}, 1},
      {"ten bytes!", "ten bytes!|", 11},
      {" Meier  X ", {" Meier  X|?", 11}, 10},
      {{"DM\0       ", 10}, {"DM\0|\0\0\0\0\0\0?", 11}, 4},  // a zero byte is no blank
  };
  for (const auto& [stored, bytes, count] : cases) {
    std::string field = stored + '?';
    EXPECT_EQ(EndField(field.data(), stored.size()), count) << stored;
    EXPECT_EQ(field, bytes) << stored;
  }
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

TEST(LeadingNumbers, EndWhereTheDigitsDo) {
  constexpr std::int32_t kMost = 2147483647;
  const std::string kBlanks = std::string(2000, ' ') + '7';
  const std::string kZeros = std::string(2000, '0') + '7';
  const std::pair<std::int32_t, std::vector<const char*>> cases[] = {
      {17, {"17", "  17", "\t17", "+17", "17abc", "17 18", "0017"}},
      {7, {kBlanks.c_str(), kZeros.c_str()}},
      {-17, {"-17", " -17-"}},
      {1, {"1.5", "1,5"}},
      {0, {"0x11", "", " ", "abc", "-", "- 17", "--17", "+", "a17", "-0"}},
      {kMost, {"2147483647", "2147483648", "99999999999999999999"}},
      {-kMost - 1, {"-2147483648", "-2147483649", "-99999999999999999999"}}};
  for (const auto& [number, texts] : cases) {
    for (const char* text : texts) {
      EXPECT_EQ(LeadingNumber(text), number);
      // Behind the character that ends the number there may be no memory.
      EXPECT_EQ(LeadingNumber(world::AtPageEnd(std::string(text) + 'x')), number);
    }
  }
  EXPECT_EQ(LeadingNumber(nullptr), 0);
}

std::string HandedOver(std::string_view bytes, HandOverForm form) {
  ResultLine record;
  record.Append(bytes);
  return OutcomeOf([&](char* buffer) { return HandOver(record, buffer, form); });
}

TEST(HandOver, TakesNoMoreOfTheBufferThanItsForm) {
  User user;
  for (const std::size_t length : {0U, 1U, 1017U, 1018U}) {
    const std::string record(length, 'x');
    EXPECT_EQ(HandedOver(record, HandOverForm::kLineOnly), "-1 " + record);
    EXPECT_EQ(HandedOver(record, HandOverForm::kWithEndMark), "-1 " + record + "<end>");
  }
  for (const std::size_t length : {1019U, 2000U}) {
    for (const auto form : {HandOverForm::kLineOnly, HandOverForm::kWithEndMark}) {
      EXPECT_EQ(HandedOver(std::string(length, 'x'), form), "0 ");
      EXPECT_THAT(user.Messages(), ElementsAre(TooMuchData()));
    }
  }
  EXPECT_EQ(HandedOver({"a\0b|", 4}, HandOverForm::kWithEndMark), "-1 a<end>");
  EXPECT_EQ(HandOver(ResultLine(), nullptr, HandOverForm::kWithEndMark), 0);
  user.ExpectNothingLeft();
}

TEST(HandOver, GivesZeroWhenTheBufferThenBeginsWithTwoEmptyFields) {
  for (const char* text : {"||", "||x"}) {
    EXPECT_EQ(HandedOver(text, HandOverForm::kLineOnly), std::string("0 ") + text);
    EXPECT_EQ(HandedOver(text, HandOverForm::kWithEndMark), std::string("0 ") + text + "<end>");
  }
  for (const char* text : {"|", "|x|", "x||"}) {
    EXPECT_EQ(HandedOver(text, HandOverForm::kLineOnly), std::string("-1 ") + text);
  }
  CallerBuffer buffer;  // what the caller had there before counts as well
  buffer[0] = buffer[1] = '|';
  EXPECT_EQ(HandOver(ResultLine(), buffer, HandOverForm::kLineOnly), 0);
}

}  // namespace
}  // namespace qlx99::tests
