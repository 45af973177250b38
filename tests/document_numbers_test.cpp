// GetDokuNr.

#include <map>

#include "support/export_test.h"

namespace qlx99::tests {
namespace {

using C = CaseRecord;
using D = DocumentNumberRecord;

const std::string kCounters = "ZTHISTO.KRV";

class DocumentNumbersTest : public ExampleOfficeTest {
 protected:
  // "7: 3, 8: 1": the last number of each case.
  std::string Counters() {
    std::map<std::int32_t, std::int32_t> all;
    for (const auto& record : office.Records<D>()) all[record[D::caseId]] = record[D::lastNumber];
    std::string text;
    for (const auto& [id, last] : all) {
      text += (text.empty() ? "" : ", ") + std::to_string(id) + ": " + std::to_string(last);
    }
    return text;
  }
};

TEST_F(DocumentNumbersTest, CountsEachCaseByItselfAndAllUnknownOnesTogether) {
  using std::string_literals::operator""s;
  office.Has<C>("id: 9, caseNumber: 123456\0\0  "s);
  const std::pair<const char*, std::int32_t> calls[] = {
      {"12345678", 1}, {"12345678", 2}, {"12345679", 1}, {"1234567890", 3},  // 8 count
      {"99999999", 1}, {"", 2},         {nullptr, 3},    {"1234567", 4},
      {"123456", 1}};  // filled with zero bytes
  for (const auto& [caseNumber, number] : calls) EXPECT_EQ(library->GetDokuNr(caseNumber), number);
  EXPECT_EQ(Counters(), "0: 4, 7: 3, 8: 1, 9: 1");
  EXPECT_EQ(manager.Calls().at(2).key.substr(0, 10), "12345678  ");
}

TEST_F(DocumentNumbersTest, WritesNothingButTheCounter) {
  EXPECT_EQ(library->GetDokuNr("12345678"), 1);
  std::string firstRecord(236, '\0');
  firstRecord[4] = 7;
  firstRecord[8] = 1;
  EXPECT_EQ(manager.Calls().at(5).Text(), "insert HISTO1");
  EXPECT_EQ(manager.Calls().at(5).data, firstRecord);
  office.Has<D>("id: 4, caseId: 8, lastNumber: 41");
  auto expected = office.Records<D>().at(1);
  EXPECT_EQ(library->GetDokuNr("12345679"), 42);
  expected.Set(D::lastNumber, 42);
  EXPECT_EQ(office.Records<D>().at(1).bytes, expected.bytes);
}

TEST_F(DocumentNumbersTest, GivesANumberOrNoneAsTheRecordManagerAnswers) {
  office.Has<D>("caseId: 8, lastNumber: 41");
  const struct {
    WORD operation;
    int status;
    const char* caseNumber;
    std::int32_t number;
    bool triedAgain;
  } rows[] = {
      {btrieve::kGetEqual, 2, "12345679", 0, false},  // not read: nothing is written
      // Not written: the letter gets its number.
      {btrieve::kInsert, 2, "12345678", 1, false},
      {btrieve::kInsert, 94, "12345678", 1, false},
      {btrieve::kUpdate, 46, "12345679", 42, false},
      {btrieve::kUpdate, 5, "12345679", 42, false},
      {btrieve::kInsert, 80, "12345678", 1, false},
      {btrieve::kInsert, 5, "12345678", 1, false},   // another key's duplicate: no counter is there
      {btrieve::kUpdate, 80, "12345679", 42, true},  // never the first to write it: not for ever
  };
  for (const auto& [operation, status, caseNumber, number, triedAgain] : rows) {
    manager.Forget();
    manager.Answers(operation, kCounters, status);
    EXPECT_EQ(library->GetDokuNr(caseNumber), number) << operation << " gives " << status;
    EXPECT_EQ(manager.Calls().size() > 8, triedAgain) << operation << " gives " << status;
  }
  EXPECT_EQ(Counters(), "8: 41");
  // No counter, and then one of another workstation, which a duplicate alone would point to.
  for (const auto& [found, inserted] : {std::pair(4, 0), {9, 0}, {4, 2}, {9, 80}}) {
    manager.Forget();
    manager.Answers(btrieve::kGetEqual, kCounters, found, 1);
    manager.Answers(btrieve::kInsert, kCounters, inserted);
    EXPECT_EQ(library->GetDokuNr("12345679"), 1) << inserted;
  }
}

TEST_F(DocumentNumbersTest, GivesNoNumberTwiceWhenAnotherWorkstationComesFirst) {
  manager.Meanwhile(btrieve::kInsert, kCounters,
                    [&] { office.Has<D>("caseId: 7, lastNumber: 1"); });
  EXPECT_EQ(library->GetDokuNr("12345678"), 2);
  for (const std::string taken : {"3", "4"}) {
    manager.Meanwhile(btrieve::kUpdate, kCounters,
                      [this, taken] { office.Changes<D>(D::byCase, 7, "lastNumber: " + taken); });
  }
  EXPECT_EQ(library->GetDokuNr("12345678"), 5);
  EXPECT_EQ(Counters(), "7: 5");
  // The number stands when the counter that another workstation wrote cannot be read again.
  for (const auto& [status, number] : {std::pair(2, 6), {4, 7}}) {
    manager.Meanwhile(btrieve::kUpdate, kCounters, [this, unread = status] {
      office.Changes<D>(D::byCase, 7, "lastNumber: 6");
      manager.Answers(btrieve::kGetEqual, kCounters, unread);
    });
    EXPECT_EQ(library->GetDokuNr("12345678"), number);
    manager.Forget();
  }
}

}  // namespace
}  // namespace qlx99::tests
