// GetDokuNr.
#include "caseparties/document_number_file.h"

#include "cases/case_file.h"
#include "support/export_test.h"

namespace qlx99::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using D = DocumentNumberRecord;

const std::string kCounters = "ZTHISTO.KRV";

class DocumentNumbersTest : public ScriptedExportTest {
 protected:
  void SetUp() override {
    office.Has<CaseRecord>({{CaseRecord::id, 7}, {CaseRecord::caseNumber, "12345678"}});
    office.Has<CaseRecord>({{CaseRecord::id, 8}, {CaseRecord::caseNumber, "12345679"}});
  }

  std::int32_t LastNumber(std::int32_t caseId) {
    for (const auto& record : office.Records<D>()) {
      if (record[D::caseId] == caseId) return record[D::lastNumber];
    }
    return -1;
  }
};

TEST_F(DocumentNumbersTest, CountsEachCaseByItself) {
  for (const std::int32_t number : {1, 2, 3}) {
    EXPECT_EQ(library->GetDokuNr("12345678"), number);
  }
  EXPECT_EQ(library->GetDokuNr("12345679"), 1);
  EXPECT_EQ(library->GetDokuNr("1234567890"), 4);  // its first 8 characters count
  EXPECT_EQ(LastNumber(7), 4);
  EXPECT_EQ(LastNumber(8), 1);
}

TEST_F(DocumentNumbersTest, UnknownCasesShareOneCounter) {
  EXPECT_EQ(library->GetDokuNr("99999999"), 1);
  EXPECT_EQ(library->GetDokuNr(""), 2);
  EXPECT_EQ(library->GetDokuNr("1234567"), 3);  // no beginning of another number
  EXPECT_EQ(LastNumber(0), 3);
}

TEST_F(DocumentNumbersTest, GoesOnFromTheStoredNumber) {
  office.Has<D>({{D::id, 4}, {D::caseId, 7}, {D::lastNumber, 41}});
  const auto before = office.Records<D>().at(0);
  EXPECT_EQ(library->GetDokuNr("12345678"), 42);
  auto expected = before;
  expected.Set(D::lastNumber, 42);
  EXPECT_EQ(office.Records<D>().at(0).bytes, expected.bytes);  // all else as it was
}

TEST_F(DocumentNumbersTest, ReadsTheCounterAfterTheCaseAndWritesItByTheSameKey) {
  EXPECT_EQ(library->GetDokuNr("12345678"), 1);
  EXPECT_THAT(manager.CallTexts(),
              ElementsAre("Open ZTHISTO.KRV", "Open ZTCASE.KRV", "GetEqual ZTCASE.KRV 1",
                          "Close ZTCASE.KRV", "GetEqual ZTHISTO.KRV 1", "Insert ZTHISTO.KRV 1",
                          "Close ZTHISTO.KRV"));
  std::string firstRecord(236, '\0');
  firstRecord[4] = 7;
  firstRecord[8] = 1;
  EXPECT_EQ(manager.Calls().at(5).data, firstRecord);
  EXPECT_EQ(manager.Calls().at(2).key.substr(0, 10), "12345678  ");

  manager.Forget();
  EXPECT_EQ(library->GetDokuNr("12345678"), 2);
  EXPECT_EQ(manager.CallTexts().at(5), "Update ZTHISTO.KRV 1");
}

TEST_F(DocumentNumbersTest, FillsAShortCaseNumberWithZeroBytes) {
  office.Has<CaseRecord>(
      {{CaseRecord::id, 9}, {CaseRecord::caseNumber, std::string_view("123456\0\0  ", 10)}});
  EXPECT_EQ(library->GetDokuNr("123456"), 1);
  EXPECT_EQ(manager.Calls().at(2).key.substr(0, 10), std::string_view("123456\0\0  ", 10));
  EXPECT_EQ(LastNumber(9), 1);
}

TEST_F(DocumentNumbersTest, StartsAnewWhereTheRecordManagerFindsNoCounter) {
  for (const int status : {4, 9}) {
    manager.Forget();
    manager.Answers(btrieve::kGetEqual, kCounters, status, 1);
    manager.Answers(btrieve::kInsert, kCounters, 0);
    EXPECT_EQ(library->GetDokuNr("12345678"), 1);
    EXPECT_EQ(manager.Calls().at(5).operation, btrieve::kInsert);
  }
}

TEST_F(DocumentNumbersTest, GivesZeroAndWritesNothingWhenTheCounterCannotBeRead) {
  manager.Answers(btrieve::kGetEqual, kCounters, 2);
  EXPECT_EQ(library->GetDokuNr("12345678"), 0);
  EXPECT_THAT(office.Records<D>(), IsEmpty());
}

TEST_F(DocumentNumbersTest, GivesTheNumberThatCouldNotBeWritten) {
  for (const int status : {2, 18, 46, 94}) {
    manager.Forget();
    manager.Answers(btrieve::kInsert, kCounters, status);
    EXPECT_EQ(library->GetDokuNr("12345678"), 1);
  }
  office.Has<D>({{D::caseId, 7}, {D::lastNumber, 41}});
  manager.Answers(btrieve::kUpdate, kCounters, 46);
  EXPECT_EQ(library->GetDokuNr("12345678"), 42);
  EXPECT_EQ(LastNumber(7), 41);
}

TEST_F(DocumentNumbersTest, GivesNoNumberTwiceWhenAnotherWorkstationComesFirst) {
  manager.Meanwhile(btrieve::kInsert, kCounters, [&] {
    office.Has<D>({{D::caseId, 7}, {D::lastNumber, 1}});
  });
  EXPECT_EQ(library->GetDokuNr("12345678"), 2);

  for (const std::int32_t taken : {3, 4}) {
    manager.Meanwhile(btrieve::kUpdate, kCounters, [this, taken] {
      office.Changes<D>(D::byCase, 7, {{D::lastNumber, taken}});
    });
  }
  EXPECT_EQ(library->GetDokuNr("12345678"), 5);
  EXPECT_EQ(LastNumber(7), 5);
}

TEST_F(DocumentNumbersTest, DoesNotRetryForEver) {
  manager.Answers(btrieve::kUpdate, kCounters, 80);
  office.Has<D>({{D::caseId, 7}, {D::lastNumber, 41}});
  EXPECT_EQ(library->GetDokuNr("12345678"), 0);
  EXPECT_EQ(LastNumber(7), 41);
}

TEST_F(DocumentNumbersTest, NeedsTheDataPathAndItsFile) {
  office.Lacks<CaseRecord>();
  EXPECT_EQ(library->GetDokuNr("12345678"), 1);  // of the unknown cases' counter
  EXPECT_EQ(library->GetDokuNr("12345678"), 2);
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen("ZTCASE.KRV"), CannotOpen("ZTCASE.KRV")));
  EXPECT_EQ(LastNumber(0), 2);

  manager.Answers(btrieve::kOpen, kCounters, 12);
  EXPECT_EQ(library->GetDokuNr("12345678"), 1);
  EXPECT_THAT(user.Messages(), ElementsAre(CannotOpen(kCounters)));

  office.IsNotConfigured("DataRoot");
  EXPECT_EQ(library->GetDokuNr("12345678"), 0);
  EXPECT_THAT(user.Messages(), ElementsAre(NoDataPath("Dokumentdaten")));
}

TEST_F(DocumentNumbersTest, IsSoundWhicheverCallFails) {
  ExpectSoundWhicheverCallFails(
      [&](char*) {
        const std::int32_t number = library->GetDokuNr("12345678");
        return number > 0 ? 1 : number;
      },
      {0, 1});
}

}  // namespace
}  // namespace qlx99::tests
