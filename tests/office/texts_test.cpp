// How texts become records and records texts.
#include <gtest/gtest.h>

#include <cstring>

#include "office/export_call.h"
#include "office/record_text.h"
#include "office/text_encoding.h"
#include "record_files.h"

namespace office {
namespace {

using qlx99::CaseRecord;

TEST(Decoding, ShowsEveryByteAndObeysNone) {
  EXPECT_EQ(Decode("M\xFCller \x80"), "Müller €");
  EXPECT_EQ(Decode("\x8E\x99\x9A\xE1\xF5\xC4", CodePage::kOem), "ÄÖÜß§─");
  EXPECT_EQ(Decode(std::string("a\0b\x1B[2J\x7F\x81", 9)), "a\\x00b\\x1B[2J\\x7F\\x81");
}

TEST(Fields, AreReadAsOthersMayHaveLeftThem) {
  std::string record(CaseRecord::file.length, '\xFF');
  EXPECT_EQ(FieldText(CaseRecord::firstDate, record), "");
  record.replace(CaseRecord::currency.offset, 3, "DM\0", 3);
  EXPECT_EQ(FieldText(CaseRecord::currency, record), "DM");
  const double smallest = 5e-324;
  std::memcpy(record.data() + CaseRecord::amount.offset, &smallest, sizeof smallest);
  EXPECT_EQ(FieldText(CaseRecord::amount, record).size(), 326U);
}

// A text of the office may hold the "|" that divides the fields.
TEST(DeliveredRecord, NamesFieldsOnlyWhereItCanTellThemApart) {
  const struct {
    const char* from;
    const char* record;
    const char* field;
    const char* text;  // of the field; null where the names belong to no fields
  } rows[] = {
      {"BLesenDLL", "4711|2 |0|", "relationCode", "2"},
      {"BLesenDLL", "4711|2 |0|", "linkNumber", ""},
      {"BLesenDLL", "4711|2 |0", "", nullptr},
      {"BLesenDLL", "", "", nullptr},
      {"WVNext", "15.05.2024|Frist|2|a|b||c|Merten|JM|1|||0|0|7", "text", "a|b||c"},
      {"WVNext", "15.05.2024|Frist|2|a|b||c|Merten|JM|1|||0|0|7", "id", "7"},
      {"WVNext", "|||2|a||Merten|JM|1|||0|0|7", "", nullptr},                // in the kind's name
      {"WVNext", "|Frist|2|a|Merten|JM|1|Loh|meyer|PL|4|0|7", "", nullptr},  // the second user's
      {"WVNext", "15.05.2024|Frist|2|a", "", nullptr},
      {"ZtkodoliNext", "a|b|10|1", "name", "a|b"},
      {"SLesenDLL", "A ./. B||||Art|1.234,50|||a|b|Merten|JM|||2|EUR", "longText", "a|b"},
      {"SLesenDLL", "A|B|||||1.234,50|||a|Merten|JM|||2|EUR", "", nullptr},
      {"BListeNext", "25|Herrn|A||Weg 1|Köln|4711||201", "name", "A"},
      {"BListeNext", "Herrn|A|B||Weg 1|Köln|4711||201", "", nullptr},  // no relation
      {"BListeNext", "25|A|B||||4711||201", "", nullptr},              // no address
  };
  for (const auto& [from, text, field, expected] : rows) {
    SCOPED_TRACE(std::string(from) + ": " + text);
    const DeliveredRecord record(ExportNamed(from), Encode(text));
    ASSERT_EQ(record.IsComplete(), expected != nullptr);
    if (expected != nullptr) {
      EXPECT_EQ(record[field], expected);
    }
  }
}

}  // namespace
}  // namespace office
