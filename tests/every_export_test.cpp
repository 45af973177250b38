// What holds for every export, whatever its work: the gate, the data path, the record manager's
// being there, the order of its calls, and that each of them may fail.
#include <functional>
#include <regex>
#include <sstream>

#include "office/export_table.h"
#include "support/export_test.h"
#include "testkit/embedded_manager.h"

namespace qlx99::tests {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
namespace fs = std::filesystem;
using Messages = std::vector<MessageBox>;
using D = DocumentNumberRecord;
using F = FollowUpRecord;

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
  const char* calls;            // when none fails, see ManagerCall::Text
  // The result when each of these calls fails, in their order: "3*0" for three times 0, "0/42" for
  // 0 where no record being found gives 42.
  const char* whenOneFails;
};

const MessageBox kNone{"", "", 0};

bool NeedsData(const Row& row) { return row.message != kNone; }

bool Writes(const Row& row) {
  return std::regex_search(row.calls, std::regex("insert|update|delete"));
}

// One result for each call that may fail.
std::vector<std::string> ResultsWhenOneFails(const Row& row, bool nothingFound) {
  std::vector<std::string> results;
  std::istringstream words(row.whenOneFails);
  for (std::string word; words >> word;) {
    const std::size_t star = word.find('*');
    const int times = star == word.npos ? 1 : std::stoi(word);
    const std::string result = word.substr(star + 1);
    const std::size_t slash = result.find('/');
    results.insert(results.end(), static_cast<std::size_t>(times),
                   nothingFound ? result.substr(slash + 1) : result.substr(0, slash));
  }
  return results;
}

// A number with nothing readable behind the character that ends it.
const char* Number(const std::string& digits) { return Unterminated(digits + 'x'); }

class EveryExportTest : public ExampleOfficeTest {
 protected:
  EveryExportTest() {
    user.TakesTheSelectedFromNowOn();
    office.Has<D>("caseId: 7, lastNumber: 41");
    office.Has<D>("caseId: 0, lastNumber: 99");
    CopyWhatIsWritten(office.DataFolder(), before_.Path());
  }

  std::string OutcomeOf(const Call& call) {
    return tests::OutcomeOf([&](char* buffer) { return call(*library.operator->(), buffer); });
  }

  // Copies the files that exports write, also over others.
  static void CopyWhatIsWritten(const fs::path& from, const fs::path& to) {
    ReleaseEmbedded();
    for (const char* file : {F::file.name, D::file.name}) {
      fs::remove(to / file);
      fs::copy(from / file, to / file);
    }
  }

  // The bytes of all follow-ups.
  std::string FollowUps() {
    std::string all;
    for (const auto& record : office.Records<F>()) {
      all.append(record.bytes.begin(), record.bytes.end());
    }
    return all;
  }

  // Runs an export with the nth of its calls failing. False when it makes fewer.
  bool IsSoundWhenCallFails(const Row& row, std::size_t n, int status);

  TemporaryFolder before_;

  // Of their arguments, too, nothing can be read behind what counts.
  const char* const kCase = Unterminated("12345678");
  const char* const kDate = Unterminated("31.12.2050");

  using E = Exports;
  const std::vector<Row> rows{
      {"GetDocuRoot", CallOf(&E::GetDocuRoot, 260, Buffer()), "0 ", kNone, "", ""},
      {"GetProgramRoot", CallOf(&E::GetProgramRoot, 260, Buffer()), "0 ", kNone, "", ""},
      {"GetAdressTyp", CallOf(&E::GetAdressTyp, nullptr, ""), "-1 ", kNone, "", ""},
      {"GetAdrFieldsMain", CallOf(&E::GetAdrFieldsMain, "1", nullptr, "3", ""), "-1 ", kNone, "",
       ""},
      {"UserInit", CallOf(&E::UserInit), "0 ", NoDataPath("User"),
       "+USER first USER0 >USER0 .. -USER", "0 0 1 2 3 3"},
      {"UserNext", CallOf(&E::UserNext, Number("2"), Buffer()), "-1 ", NoDataPath("Userdaten"),
       "+USER first USER0 >USER0 -USER", "4*-1"},
      {"ZtkodoliInit", CallOf(&E::ZtkodoliInit), "0 ", NoDataPath("User"),
       "+KODOLI first KODOLI0 >KODOLI0 .. -KODOLI", "0 0 1 2 2"},
      {"ZtkodoliNext", CallOf(&E::ZtkodoliNext, Number("1"), Buffer()), "-1 ",
       NoDataPath("Wiedervorlagedaten"), "+KODOLI first KODOLI0 -KODOLI", "3*-1"},
      {"WVInit", CallOf(&E::WVInit, kCase), "0 ", NoDataPath("Wiedervorlagedaten"),
       "+CASE +DOLIST =CASE1 =DOLIST1 >DOLIST1 .. -DOLIST -CASE", "4*0 1 2 2 2"},
      {"WVNext", CallOf(&E::WVNext, kCase, Number("1"), Buffer()), "-1 ",
       NoDataPath("Adressadaten"),
       "+CASE +DOLIST =CASE1 =DOLIST1 +KODOLI =KODOLI0 -KODOLI +USER =USER0 -USER +USER =USER0 "
       "-USER +HEAD =HEAD1 >HEAD1 -HEAD -DOLIST -CASE",
       "19*-1"},
      {"WVNew", CallOf(&E::WVNew, kCase, Number("3"), kDate, Number("17"), "", "", ""), "0 ",
       NoDataPath("Wiedervorlagedaten"), "+CASE =CASE1 -CASE +DOLIST insert DOLIST0 -DOLIST",
       "0 0 -1 0 0 -1"},
      {"WVChange", CallOf(&E::WVChange, Number("1"), Number("3"), kDate, Number("17"), "", "", ""),
       "0 ", kNoPathToWrite, "+DOLIST =DOLIST0 update DOLIST0 -DOLIST", "3*0 -1"},
      {"WVDelete", CallOf(&E::WVDelete, Number("2")), "0 ", kNoPathToWrite,
       "+DOLIST =DOLIST0 .. delete DOLIST0 -DOLIST", "4*0 -1"},
      {"SLesenDLL", CallOf(&E::SLesenDLL, kCase, Buffer()), "-1 |<end>", NoDataPath("Aktendaten"),
       "+CASE =CASE1 +TCASE =TCASE0 -TCASE +USER =USER0 -USER +ABLAG =ABLAG0 -ABLAG -CASE +CASE "
       "+HEAD +KOFPAR =CASE1 =HEAD1 >HEAD1 .. -KOFPAR -HEAD -CASE",
       "24*-1"},
      {"ALesenDLL", CallOf(&E::ALesenDLL, kCase, Number("4711"), Buffer(), Number("815")),
       "-1 <end>", NoDataPath("Adressadaten"),
       "+PART +KOFPAR +KOTITL +KOADBY +ADRESS +BANK =PART2 >PART2 =KOADBY0 =KOTITL0 =ADRESS0 "
       "+HEAD +CASE =CASE1 =HEAD1 >HEAD1 .. -CASE -HEAD +KONAT =KONAT0 -KONAT =BANK1 >BANK1 "
       "=ADRESS0 +ADTOAD =ADTOAD1 >ADTOAD1 =KOFPAR0 -ADTOAD -BANK -ADRESS -KOADBY -KOTITL "
       "-KOFPAR -PART",
       "6*-1 0 29*-1"},
      {"BLesenDLL", CallOf(&E::BLesenDLL, "M ", Unterminated("12345670"), "", "", Buffer()), "0 ",
       NoDataPath("Dokumentdaten"),
       "+HEAD +CASE =CASE1 -CASE =HEAD1 +KOFPAR =KOFPAR0 -KOFPAR >HEAD1 +KOFPAR =KOFPAR0 -KOFPAR "
       ">HEAD1 -HEAD +PART +CASE +KOFPAR +KOTITL +KOADBY +ADTOAD +HEAD +ADRESS =CASE1 =HEAD1 "
       "=KOFPAR0 =PART2 >HEAD1 =KOFPAR0 =PART2 >HEAD1 -ADRESS -HEAD -ADTOAD -KOADBY -KOTITL "
       "-KOFPAR -CASE -PART",
       "0 0 0 -1 0 9*-1 10*0 14*-1"},
      {"BListeInit", CallOf(&E::BListeInit, kCase), "0 ", NoDataPath("Adressadaten"),
       "+CASE +HEAD +KOFPAR =CASE1 =HEAD1 >HEAD1 .. -KOFPAR -HEAD -CASE", "5*0 1 2 3 4*4"},
      {"BListeNext", CallOf(&E::BListeNext, kCase, Number("2"), Buffer()), "0 ||<end>",
       NoDataPath("Adressadaten"),
       "+CASE +HEAD +KOFPAR =CASE1 =HEAD1 >HEAD1 =KOFPAR0 +PART +ADRESS +KOADBY =ADRESS0 "
       "=KOADBY0 =PART2 -KOADBY -ADRESS -PART -KOFPAR -HEAD -CASE",
       "6*0 -1 3*0 -1 -1 0 6*-1"},
      {"GetDokuNr", CallOf(&E::GetDokuNr, kCase), "0 ", NoDataPath("Dokumentdaten"),
       "+HISTO +CASE =CASE1 -CASE =HISTO1 update HISTO1 -HISTO", "1 100 100 42 0/42 42 42"},
  };
};

TEST_F(EveryExportTest, DoesNothingWhenItIsNotLetIn) {
  EXPECT_EQ(rows.size(), office::Exports().size());
  office.IsConfigured("ProgramName", "TELQ32.EXE");
  for (const char* root : {"DocuRoot", "ProgramRoot"}) office.IsConfigured(root, "C:\\Akten");
  for (const Row& row : rows) EXPECT_EQ(OutcomeOf(row.call), "0 ") << row.name;
  EXPECT_EQ(manager.CallText(), "");
}

TEST_F(EveryExportTest, SaysWhichDataItCannotTakeWithoutADataPath) {
  office.IsNotConfigured("DataRoot");
  for (const Row& row : rows) {
    EXPECT_EQ(OutcomeOf(row.call), row.withoutDataPath) << row.name;
    EXPECT_EQ(user.Messages(), NeedsData(row) ? Messages{row.message} : Messages{}) << row.name;
  }
}

TEST_F(EveryExportTest, SaysThatThereIsNoRecordManagerWhenItNeedsOne) {
  UnloadRecordManagers();
  managers.Are({});
  for (const Row& row : rows) {
    const bool delivers = !NeedsData(row) || row.name == std::string("SLesenDLL");
    EXPECT_EQ(OutcomeOf(row.call), delivers ? row.withoutDataPath : "0 ") << row.name;
    EXPECT_EQ(user.Messages(), NeedsData(row) ? Messages{NoRecordManager()} : Messages{})
        << row.name;
  }
}

TEST_F(EveryExportTest, MakesItsCallsInOneFixedOrder) {
  for (const Row& row : rows) {
    manager.Forget();
    OutcomeOf(row.call);
    EXPECT_EQ(manager.CallText(), row.calls) << row.name;
  }
}

bool EveryExportTest::IsSoundWhenCallFails(const Row& row, std::size_t n, int status) {
  const bool writes = Writes(row);
  if (writes) CopyWhatIsWritten(before_.Path(), office.DataFolder());
  const std::string before = writes ? FollowUps() : "";
  manager.Forget();
  manager.FailsCall(n, status);
  CallerBuffer buffer;
  const std::int32_t result = row.call(*library.operator->(), buffer);
  const bool nothingFound = status == btrieve::kKeyNotFound || status == btrieve::kEndOfFile;
  const auto results = ResultsWhenOneFails(row, nothingFound);
  if (manager.Calls().size() < n) {
    EXPECT_EQ(results.size(), n - 1) << row.name;
    return false;
  }
  const ManagerCall failed = manager.Calls()[n - 1];
  SCOPED_TRACE(std::string(row.name) + ": " + failed.Text() + " (call " + std::to_string(n) +
               ") fails with status " + std::to_string(status));
  EXPECT_EQ(std::to_string(result), results.at(n - 1));
  EXPECT_THAT(OutcomeText(result, buffer), Not(HasSubstr("<rubbish>")));
  EXPECT_THAT(manager.OpenFiles(), IsEmpty());
  // What is acknowledged is written, what is refused is not.
  if (writes) {
    EXPECT_EQ(FollowUps() != before, result == -1);
  }
  // The user is told of the file that could not be opened or closed and of no other.
  Messages messages = user.Messages();
  std::erase_if(messages, [](const auto& m) { return !m.text.starts_with("Die Datei"); });
  Messages expected;
  if (failed.operation == btrieve::kOpen) expected = {CannotOpen(failed.file)};
  if (failed.operation == btrieve::kClose) expected = {CannotClose(failed.file)};
  EXPECT_EQ(messages, expected);
  return true;
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

TEST_F(EveryExportTest, TakesACaseWhoseIdIsZeroForNone) {
  office.Has<CaseRecord>("id: 0, caseNumber: 00000000, rubrum: R, currency: EUR");
  office.Has<CasePartyRecord>(
      "id: 401, caseId: 0, addressNumber: 4711, addressLinkNumber: 815, "
      "contactAddition: fremd, addressAddition: fremd");
  office.Has<CasePartyRecord>("id: 402, caseId: 0, addressNumber: 4712");
  office.Has<F>("id: 0, caseId: 0, date: 01.01.2000");
  const auto outcomes = [&](const char* number) {
    std::vector<std::string> all;
    for (const Call& call :
         {CallOf(&E::SLesenDLL, number, Buffer()),
          CallOf(&E::ALesenDLL, number, "4711", Buffer(), "815"),
          CallOf(&E::BLesenDLL, "  ", number, "", "", Buffer()), CallOf(&E::BListeInit, number),
          CallOf(&E::BListeNext, number, "1", Buffer()), CallOf(&E::WVInit, number),
          CallOf(&E::WVNext, number, "1", Buffer()),
          CallOf(&E::WVNew, number, "3", "31.12.2050", "17", "", "", "")}) {
      all.push_back(OutcomeOf(call));
    }
    return all;
  };
  EXPECT_EQ(outcomes("00000000"), outcomes("99999999"));
  EXPECT_EQ(library->GetDokuNr("00000000"), 100) << "the counter of all unknown cases";
}

}  // namespace
}  // namespace qlx99::tests
