// What holds for every export, whatever its work: the gate, the data path, the record manager's
// being there, the order of its calls, and that each of them may fail.
#include <algorithm>
#include <functional>

#include "followups/follow_up_file.h"
#include "office/export_table.h"
#include "support/example_office.h"

namespace qlx99::tests {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Messages = std::vector<MessageBox>;

const MessageBox kNoPathToWrite{
    "Datenpfad nicht gefunden !\n Wiedervorlagedaten können nicht gelöscht werden ! ",
    "Systemmeldung !", MB_ICONHAND};

// Stands among an export's arguments for its caller's buffer.
struct Buffer {};

char* Argument(Buffer /*here*/, char* buffer) { return buffer; }
auto Argument(auto value, char* /*buffer*/) { return value; }

using Call = std::function<std::int32_t(const Exports& library, char* buffer)>;

template <class Function, class... Arguments>
Call CallOf(Function Exports::*function, Arguments... arguments) {
  return [=](const Exports& library, [[maybe_unused]] char* buffer) {
    return (library.*function)(Argument(arguments, buffer)...);
  };
}

struct Row {
  const char* name;
  Call call;
  const char* withoutDataPath;  // the outcome ...
  MessageBox message;           // ... and the message; none for an export that needs no data
  std::int32_t whenACallFails;  // the result, 1 for any positive one,
  std::int32_t orThen;          // or this one
  const char* calls;            // when none fails, see ManagerCall::Text
};

const MessageBox kNone{"", "", 0};

bool NeedsData(const Row& row) { return row.message != kNone; }

class EveryExportTest : public ExampleOfficeTest {
 protected:
  EveryExportTest() { user.TakesTheSelectedFromNowOn(); }

  std::string OutcomeOf(const Row& row) {
    return tests::OutcomeOf([&](char* buffer) { return row.call(*library.operator->(), buffer); });
  }

  // Runs an export with the nth of its calls failing. False when it makes fewer.
  bool IsSoundWhenCallFails(const Row& row, std::size_t n, int status);

  // Deletes a new follow-up; the latest has the highest number.
  std::int32_t DeleteNewFollowUp(const Exports& exports) {
    using F = FollowUpRecord;
    office.Has<F>("id: 0, caseId: 9");
    return exports.WVDelete(std::to_string(office.Records<F>().back()[F::id]).c_str());
  }

  using E = Exports;
  const std::vector<Row> rows{
      {"GetDocuRoot", CallOf(&E::GetDocuRoot, 260, Buffer()), "0 ", kNone, 0, 0, ""},
      {"GetProgramRoot", CallOf(&E::GetProgramRoot, 260, Buffer()), "0 ", kNone, 0, 0, ""},
      {"GetAdressTyp", CallOf(&E::GetAdressTyp, nullptr, ""), "-1 ", kNone, 0, 0, ""},
      {"GetAdrFieldsMain", CallOf(&E::GetAdrFieldsMain, "1", nullptr, "3", ""), "-1 ", kNone, 0, 0,
       ""},
      {"UserInit", CallOf(&E::UserInit), "0 ", NoDataPath("User"), 0, 1,
       "+USER first USER0 >USER0 .. -USER"},
      {"UserNext", CallOf(&E::UserNext, "2", Buffer()), "-1 ", NoDataPath("Userdaten"), -1, -1,
       "+USER first USER0 >USER0 -USER"},
      {"ZtkodoliInit", CallOf(&E::ZtkodoliInit), "0 ", NoDataPath("User"), 0, 1,
       "+KODOLI first KODOLI0 >KODOLI0 .. -KODOLI"},
      {"ZtkodoliNext", CallOf(&E::ZtkodoliNext, "1", Buffer()), "-1 ",
       NoDataPath("Wiedervorlagedaten"), -1, -1, "+KODOLI first KODOLI0 -KODOLI"},
      {"WVInit", CallOf(&E::WVInit, "12345678"), "0 ", NoDataPath("Wiedervorlagedaten"), 0, 1,
       "+CASE +DOLIST =CASE1 =DOLIST1 >DOLIST1 .. -DOLIST -CASE"},
      {"WVNext", CallOf(&E::WVNext, "12345678", "1", Buffer()), "-1 ", NoDataPath("Adressadaten"),
       0, -1,
       "+CASE +DOLIST =CASE1 =DOLIST1 +KODOLI =KODOLI0 -KODOLI +USER =USER0 -USER +USER =USER0 "
       "-USER +HEAD =HEAD1 >HEAD1 -HEAD -DOLIST -CASE"},
      {"WVNew", CallOf(&E::WVNew, "12345678", "3", "31.12.2050", "17", "", "", ""), "0 ",
       NoDataPath("Wiedervorlagedaten"), 0, -1,
       "+CASE =CASE1 -CASE +DOLIST insert DOLIST0 -DOLIST"},
      {"WVChange", CallOf(&E::WVChange, "1", "3", "31.12.2050", "17", "", "", ""), "0 ",
       kNoPathToWrite, 0, -1, "+DOLIST =DOLIST0 update DOLIST0 -DOLIST"},
      {"WVDelete", [this](const Exports& exports, char*) { return DeleteNewFollowUp(exports); },
       "0 ", kNoPathToWrite, 0, -1, "+DOLIST =DOLIST0 .. delete DOLIST0 -DOLIST"},
      {"SLesenDLL", CallOf(&E::SLesenDLL, "12345678", Buffer()), "-1 |<end>",
       NoDataPath("Aktendaten"), -1, -1,
       "+CASE =CASE1 +TCASE =TCASE0 -TCASE +USER =USER0 -USER +ABLAG =ABLAG0 -ABLAG -CASE +CASE "
       "+HEAD +KOFPAR =CASE1 =HEAD1 >HEAD1 .. -KOFPAR -HEAD -CASE"},
      {"ALesenDLL", CallOf(&E::ALesenDLL, "12345678", "4711", Buffer(), "815"), "-1 <end>",
       NoDataPath("Adressadaten"), 0, -1,
       "+PART +KOFPAR +KOTITL +KOADBY +ADRESS +BANK =PART2 >PART2 =KOADBY0 =KOTITL0 =ADRESS0 "
       "+HEAD +CASE =CASE1 =HEAD1 >HEAD1 .. -CASE -HEAD +KONAT =KONAT0 -KONAT =BANK1 >BANK1 "
       "=ADRESS0 +ADTOAD =ADTOAD1 >ADTOAD1 =KOFPAR0 -ADTOAD -BANK -ADRESS -KOADBY -KOTITL "
       "-KOFPAR -PART"},
      {"BLesenDLL", CallOf(&E::BLesenDLL, "M ", "12345670", "", "", Buffer()), "0 ",
       NoDataPath("Dokumentdaten"), 0, -1,
       "+HEAD +CASE =CASE1 -CASE =HEAD1 +KOFPAR =KOFPAR0 -KOFPAR >HEAD1 +KOFPAR =KOFPAR0 -KOFPAR "
       ">HEAD1 -HEAD +PART +CASE +KOFPAR +KOTITL +KOADBY +ADTOAD +HEAD +ADRESS =CASE1 =HEAD1 "
       "=KOFPAR0 =PART2 >HEAD1 =KOFPAR0 =PART2 >HEAD1 -ADRESS -HEAD -ADTOAD -KOADBY -KOTITL "
       "-KOFPAR -CASE -PART"},
      {"BListeInit", CallOf(&E::BListeInit, "12345678"), "0 ", NoDataPath("Adressadaten"), 0, 1,
       "+CASE +HEAD +KOFPAR =CASE1 =HEAD1 >HEAD1 .. -KOFPAR -HEAD -CASE"},
      {"BListeNext", CallOf(&E::BListeNext, "12345678", "2", Buffer()), "0 ||<end>",
       NoDataPath("Adressadaten"), 0, -1,
       "+CASE +HEAD +KOFPAR =CASE1 =HEAD1 >HEAD1 =KOFPAR0 +PART +ADRESS +KOADBY =ADRESS0 "
       "=KOADBY0 =PART2 -KOADBY -ADRESS -PART -KOFPAR -HEAD -CASE"},
      {"GetDokuNr", CallOf(&E::GetDokuNr, "12345678"), "0 ", NoDataPath("Dokumentdaten"), 0, 1,
       "+HISTO +CASE =CASE1 -CASE =HISTO1 insert HISTO1 -HISTO"},
  };
};

TEST_F(EveryExportTest, DoesNothingWhenItIsNotLetIn) {
  EXPECT_EQ(rows.size(), office::Exports().size());
  office.IsConfigured("ProgramName", "TELQ32.EXE");
  for (const char* root : {"DocuRoot", "ProgramRoot"}) office.IsConfigured(root, "C:\\Akten");
  for (const Row& row : rows) EXPECT_EQ(OutcomeOf(row), "0 ") << row.name;
  EXPECT_EQ(manager.CallText(), "");
}

TEST_F(EveryExportTest, SaysWhichDataItCannotTakeWithoutADataPath) {
  office.IsNotConfigured("DataRoot");
  for (const Row& row : rows) {
    EXPECT_EQ(OutcomeOf(row), row.withoutDataPath) << row.name;
    EXPECT_EQ(user.Messages(), NeedsData(row) ? Messages{row.message} : Messages{}) << row.name;
  }
}

TEST_F(EveryExportTest, SaysThatThereIsNoRecordManagerWhenItNeedsOne) {
  UnloadRecordManagers();
  managers.Are({});
  for (const Row& row : rows) {
    const std::string name = row.name;
    if (name == "WVDelete") continue;  // which would need one for its follow-up
    const bool delivers = !NeedsData(row) || name == "SLesenDLL";
    EXPECT_EQ(OutcomeOf(row), delivers ? row.withoutDataPath : "0 ") << name;
    EXPECT_EQ(user.Messages(), NeedsData(row) ? Messages{NoRecordManager()} : Messages{}) << name;
  }
}

TEST_F(EveryExportTest, MakesItsCallsInOneFixedOrder) {
  for (const Row& row : rows) {
    manager.Forget();
    OutcomeOf(row);
    EXPECT_EQ(manager.CallText(), row.calls) << row.name;
  }
}

bool EveryExportTest::IsSoundWhenCallFails(const Row& row, std::size_t n, int status) {
  manager.Forget();
  manager.FailsCall(n, status);
  CallerBuffer buffer;
  const std::int32_t result = row.call(*library.operator->(), buffer);
  if (manager.Calls().size() < n) return false;
  const ManagerCall& failed = manager.Calls()[n - 1];
  SCOPED_TRACE(std::string(row.name) + ": " + failed.Text() + " (call " + std::to_string(n) +
               ") fails with status " + std::to_string(status));
  EXPECT_THAT(std::min(result, 1), AnyOf(row.whenACallFails, row.orThen));
  EXPECT_THAT(Outcome(result, buffer), Not(HasSubstr("<rubbish>")));
  EXPECT_THAT(manager.OpenFiles(), IsEmpty());
  // The user is told of the file that could not be opened or closed and of no other.
  Messages messages = user.Messages();
  std::erase_if(messages, [](const auto& m) { return !m.text.starts_with("Die Datei"); });
  Messages expected;
  if (failed.operation == btrieve::kOpen) expected = {CannotOpen(failed.file)};
  if (failed.operation == btrieve::kClose) expected = {CannotClose(failed.file)};
  EXPECT_EQ(messages, expected);
  return true;
}

TEST_F(EveryExportTest, IsSoundWhateverTheRecordsHold) {
  for (const char byte : {'\0', ' ', '|', '\x7F', '\xFF'}) {
    for (const Row& row : rows) {
      manager.Forget();
      manager.FillsRecordsWith(byte);
      EXPECT_THAT(OutcomeOf(row), Not(HasSubstr("<rubbish>"))) << row.name << " of " << int{byte};
    }
  }
  user.Messages();
}

TEST_F(EveryExportTest, IsSoundWhicheverCallFails) {
  for (const Row& row : rows) {
    for (const int status : {btrieve::kIoError, btrieve::kKeyNotFound, btrieve::kEndOfFile,
                             btrieve::kPermissionError}) {
      for (std::size_t n = 1; IsSoundWhenCallFails(row, n, status); ++n) {
      }
    }
  }
}

}  // namespace
}  // namespace qlx99::tests
