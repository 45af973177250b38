// The tool's commands on the sample office, through the library and the embedded record manager.
#include <gmock/gmock.h>

#include <fstream>

#include "frame/attach.h"
#include "office/command_line.h"
#include "office/record_manager.h"
#include "record_files.h"
#include "sample_office.h"
#include "support/office_programs.h"
#include "support/world.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Commands : public SampleOffice {};

// Before and behind the document number.
constexpr const char* kLetterBegin = R"(Herrn
Dr. Klaus Brandstätter
c/o Praxis Dr. Brandstätter
Hinterhaus, 2. Etage
Lindenthaler Gürtel 84 a
50935 Köln


Unser Zeichen:      12345678/JM
Dokument Nr.:       )";
constexpr const char* kLetterEnd = R"(
Bearbeitet von:     Rechtsanwalt Dr. Jan Merten
Ihr Zeichen:        Vers.-Nr. RS 24-118-3307


Brandstätter ./. Wernicke
wegen Schadensersatz aus Verkehrsunfall
Landgericht Köln, 5 O 217/24


Sehr geehrter Herr Dr. Brandstätter,

in der vorbezeichneten Angelegenheit (Verkehrsunfallsache) nehmen wir
Bezug auf den bei uns geführten Vorgang. Der Gegenstandswert beträgt
derzeit 12.345,67 EUR. Als Daten sind der 19.02.2024 und der 15.05.2024
vermerkt.

Für Zahlungen an Sie ist bei uns folgende Bankverbindung hinterlegt:

    Stadtsparkasse Köln
    Bankleitzahl 370 501 98
    Konto 1900 456 712

Bitte teilen Sie uns mit, falls diese Angaben nicht mehr zutreffen.

Bei Antworten und Rückfragen geben Sie bitte unser Zeichen an.

Mit freundlichen Grüßen


Rechtsanwalt Dr. Jan Merten
)";

TEST_F(Commands, LetterGoesToTheClientUnderTheNextDocumentNumber) {
  const std::string result = Qlx({"call", "GetDokuNr", "12345678"}).out;
  const int last = std::stoi(result.substr(result.find("result: ") + 8));
  const Outcome letter = Qlx({"letter", "12345678"});
  EXPECT_EQ(letter.out, kLetterBegin + std::to_string(last + 1) + kLetterEnd);
  EXPECT_EQ(letter.err, "");
  EXPECT_EQ(letter.code, office::kDone);
}

TEST_F(Commands, LettersSpeakToWhomTheyAreFor) {
  const struct {
    const char* caseNumber;
    const char* role;
    const char* begin;
    const char* salutation;
  } rows[] = {
      {"24000317", "G", "Stadtbekannt Werbeagentur GmbH\nPersonalabteilung\nNeumarkt 18\n",
       "\nSehr geehrte Damen und Herren,\n"},
      {"12345678", "V", "Herrn\nDr. Jochen Weber\nRechtsanwalt\n",
       "\nSehr geehrter Herr Kollege Dr. Weber,\n"},
      {"98010042", "M", "Herrn\nProf. Dr. Leopold Ganglbauer\n",
       "\nSehr geehrter Herr Prof. Dr. Ganglbauer,\n"},
      {"24000317", "M ", "Frau\nGülay Özdemir\n", "\nSehr geehrte Frau Özdemir,\n"},
      {"24000777", "M", "Tierschutzverein Siebengebirge e. V.\n- Der Vorstand -\n53001 Bonn\n",
       "Zur Akte ist ein Betrag von -1.234,50 EUR"},
      {"98010042", "M", "Herrn\n", "seit dem 30.06.1999 abgelegt (Ablagezeichen Kö/08)"},
  };
  for (const auto& [caseNumber, role, begin, salutation] : rows) {
    EXPECT_THAT(Qlx({"letter", caseNumber, "--role", role}).out,
                AllOf(StartsWith(begin), HasSubstr(salutation)));
  }
}

TEST_F(Commands, RefusedLettersUseUpNoDocumentNumber) {
  const std::string before = Qlx({"office", "show", "zthisto"}).out;
  const struct {
    std::vector<std::string> arguments;
    const char* complaint;
  } rows[] = {
      {{"letter", "99999999"}, "There is no case 99999999"},
      {{"letter", "25000001"}, "None of the 0 parties of case 25000001 is in the role \"M \""},
      {{"letter", "12345678", "--role", "§G"}, "None of the 7 parties"},
      {{"letter", "98010042", "--role", "G"}, "Address 4806, of Roßbach, has no place"},
  };
  for (const auto& [arguments, complaint] : rows) {
    const Outcome letter = Qlx(arguments);
    EXPECT_EQ(letter.out, "");
    EXPECT_THAT(letter.err, HasSubstr(complaint));
    EXPECT_EQ(letter.code, office::kFailed);
  }
  EXPECT_EQ(Qlx({"office", "show", "ZTHISTO.KRV"}).out, before);
}

TEST_F(Commands, CallNamesTheFieldsOfWhatItIsGiven) {
  EXPECT_EQ(Qlx({"call", "BLesenDLL", "M ", "12345678"}).out,
            "kind: local\n"
            "result: -1  (-1: delivered)\n"
            "record: 4711|25|0|815\n"
            "   1  addressNumber         4711\n"
            "   2  relationCode          25\n"
            "   3  always0               0\n"
            "   4  linkNumber            815\n");
  EXPECT_EQ(Qlx({"call", "UserInit"}).out, "kind: local\nresult: 5  (number of users)\n");
  // Two parties, and no dialog allowed: nothing is written.
  EXPECT_EQ(
      Qlx({"call", "BLesenDLL", "G ", "23001124", "", "1"}).out,
      "kind: local\nresult: 0  (-1: delivered)\nrecord: none; the buffer was left as it was\n");
  EXPECT_THAT(
      Qlx({"call", "SLesenDLL", "99999999"}).out,
      AllOf(HasSubstr("record: 0|\n"), HasSubstr("go without names"), Not(HasSubstr("rubrum"))));
  EXPECT_THAT(Qlx({"call", "WVNext", "24000317", "-5"}).out, HasSubstr("(§ 4 KSchG)"));
  EXPECT_THAT(Qlx({"call", "GetDocuRoot", "260"}).out, HasSubstr("Dokumente\n   1  path "));
}

TEST_F(Commands, FollowUpsStandInTheOrderInWhichTheyAreDue) {
  EXPECT_EQ(
      Qlx({"followups", "12345678"}).out,
      "Date        Kind            Text                                                         "
      "User  Second  Party                          ID\n"
      "04.03.2024  Frist           Stellungnahme der Haftpflichtversicherung zur Haftungsquote  "
      "PL            Westfälische Haftpflicht VVaG  2\n"
      "04.03.2024  Telefonat       Rückruf des Mandanten wegen Mietwagenrechnung                "
      "JM            Brandstätter                   3\n"
      "15.05.2024  Gerichtstermin  Güterichtertermin, Saal 217, 10:30 Uhr; Mandant ist geladen  "
      "JM    PL      Landgericht Köln               1\n"
      "31.12.2024                  Verjährung prüfen                                            "
      "JM                                           5\n"
      "            Wiedervorlage   Gutachten Pütz anfordern                                     "
      "PL            Pütz                           4\n");
  // The one with neither date nor kind counts, too.
  EXPECT_THAT(Qlx({"followups", "24000402"}).out, HasSubstr("Versorgungsausgleich klären"));
  EXPECT_EQ(Qlx({"followups", "99999999"}).code, office::kFailed);
}

TEST_F(Commands, ShowPrintsNarrowRecordsInLinesAndWideOnesInBlocks) {
  EXPECT_EQ(Qlx({"office", "show", "ztablag"}).out,
            "         id  mark         date\n"
            "          1  A-117  12.12.2003\n"
            "          2  Kö/08  30.06.1999\n"
            "          3         03.01.2022\n"
            "          4  Übg.1\n");
  EXPECT_THAT(Qlx({"office", "show", "ZTCASE.KRV"}).out,
              HasSubstr("\n\nid: 5\ncaseNumber: 98010042\nuserId: 1\n"));
}

TEST_F(Commands, CreateLeavesAnOfficeAlone) {
  const Outcome again = Qlx({"office", "create", Folder()});
  EXPECT_EQ(again.code, office::kFailed);
  EXPECT_THAT(again.err, HasSubstr("Nothing was changed"));
  EXPECT_EQ(Qlx({"office", "check"}).code, office::kDone);
}

TEST_F(Commands, WrongUsageHasItsOwnExitCode) {
  const struct {
    std::vector<std::string> arguments;
    const char* complaint;
  } rows[] = {
      {{}, "subcommand is required"},
      {{"letter"}, "CASE is required"},
      {{"letter", "12345678", "--rolle", "M"}, "--rolle"},
      {{"call", "Blubb"}, "There is no export \"Blubb\". There are:\n  GetDocuRoot length\n"},
      {{"call", "UserInit", "1"}, "UserInit takes 0 arguments, not 1"},
      {{"call", "GetDocuRoot", "x"}, "\"x\" is not a whole number"},
      {{"office", "show", "ZTNIX"}, "There are: ZTUSER ZTTCASE"},
      {{"office", "create", "nowhere", "--cases", "0"}, "--cases"},
  };
  for (const auto& [arguments, complaint] : rows) {
    const Outcome outcome = Qlx(arguments);
    EXPECT_EQ(outcome.code, office::kWrongUsage) << complaint;
    EXPECT_THAT(outcome.err, HasSubstr(complaint));
    EXPECT_EQ(outcome.out, "");
  }
  EXPECT_THAT(Qlx({"--version"}).out, StartsWith("qlx "));
  EXPECT_THAT(Qlx({"--help"}).out, HasSubstr("qlx letter 12345678"));
}

// Everything here has a registry and files of its own.
class Installations : public testing::Test {
 protected:
  PrivateRegistry registry_;
  TemporaryFolder folder_;
};

TEST_F(Installations, AreCheckedFileByFile) {
  EXPECT_THAT(Qlx({"setup", folder_.Text()}).err, HasSubstr("There is no office in"));
  EXPECT_THAT(Qlx({"office", "check"}).out, HasSubstr("! DataRoot        is not set in "));

  const office::RecordManager manager;
  const auto create = [&](qlx99::RecordLayout layout) {
    office::TableFile::Create(manager, folder_.Path(), layout);
  };
  create(qlx99::LayoutOf<qlx99::CaseRecord>());
  auto otherLength = qlx99::LayoutOf<qlx99::TitleRecord>();
  ++otherLength.file.length;
  create(otherLength);
  auto otherKeys = qlx99::LayoutOf<qlx99::CaseTypeRecord>();
  otherKeys.file = qlx99::BankConnectionRecord::file;
  create(otherKeys);
  std::ofstream(folder_.Path() / "ZTKONAT.KRV") << "This is not a record file.";
  ASSERT_EQ(Qlx({"setup", folder_.Text()}).code, office::kDone);

  const Outcome check = Qlx({"office", "check"});
  EXPECT_EQ(check.code, office::kFailed);
  EXPECT_THAT(check.out,
              AllOf(HasSubstr("\n  ZTCASE.KRV      0 records of 375 bytes\n"),
                    HasSubstr("\n! ZTKOTITL.KRV    its records have 80 bytes, not 79; put "),
                    HasSubstr("\n! ZTBANK.KRV      it has no key 1; put "),
                    HasSubstr("ZTKONAT.KRV: it is not a record file, or"),
                    HasSubstr("ZTPART.KRV: there is no such file; restore it")));
}

TEST(ConfiguredInstallation, IsCheckedForWhatItsKindNeeds) {
  qlx99::tests::Office its;
  const qlx99::tests::OfficePrograms programs(its);
  qlx99::AttachLibrary(GetModuleHandleA(nullptr));
  const Outcome whole = Qlx({"office", "check"});
  EXPECT_EQ(whole.code, office::kDone);
  EXPECT_THAT(whole.out, HasSubstr("  ProgramName     delegated, "));
  std::filesystem::remove(programs.Bin32() / "telq32.exe");
  std::filesystem::remove(programs.Bin32() / qlx99::tests::world::LibraryFile("qlx02"));
  EXPECT_THAT(Qlx({"office", "check"}).out,
              AllOf(HasSubstr("telq32.exe; connect its drive, "),
                    HasSubstr("qlx02.dll cannot be loaded (error 126); ")));
  its.IsNotConfigured("MappingRoot");
  EXPECT_THAT(Qlx({"office", "check"}).out, HasSubstr("! MappingRoot     is not set in "));
  EXPECT_EQ(Qlx({"call", "UserInit"}).out, "kind: delegated\nresult: 0  (number of users)\n");
  its.IsNotConfigured("ProgramName");
  qlx99::AttachLibrary(GetModuleHandleA(nullptr));
  its.IsConfigured("DataRoot", "/nowhere");
  EXPECT_THAT(Qlx({"office", "check"}).out,
              HasSubstr("! DataRoot        there is no folder /nowhere; connect its drive, "));
}

TEST_F(Installations, CanBeGeneratedAndAreTheSameEachTime) {
  TemporaryFolder second;
  std::string shown[2];
  int at = 0;
  for (const std::string& folder : {folder_.Text(), second.Text()}) {
    const Outcome created = Qlx({"office", "create", folder, "--cases", "3"});
    ASSERT_EQ(created.code, office::kDone) << created.err;
    EXPECT_THAT(created.err, HasSubstr("3 of 3 cases\n"));
    ASSERT_EQ(Qlx({"setup", folder}).code, office::kDone);
    for (const char* file : {"ZTCASE", "ZTHEAD", "ZTPART", "ZTADRESS", "ZTBANK", "ZTDOLIST"}) {
      shown[at] += Qlx({"office", "show", file}).out;
    }
    ++at;
  }
  EXPECT_EQ(shown[0], shown[1]);
  for (const char* party : {"1", "2", "3", "4", "5"}) {
    EXPECT_THAT(Qlx({"call", "BListeNext", "10000003", party}).out, HasSubstr("partyRecordId"));
  }
}

}  // namespace
