// The tool's commands on the sample office, through the library and the embedded record manager.
#include <gmock/gmock.h>

#include <cstring>
#include <sstream>

#include "office/command_line.h"
#include "office/export_call.h"
#include "office/record_manager.h"
#include "office/record_text.h"
#include "office/text_encoding.h"
#include "record_files.h"
#include "sample_office.h"
#include "support/user.h"
#include "testkit/process.h"

namespace {

using office::kDone;
using office::kFailed;
using office::kWrongUsage;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class QlxCommands : public SampleOffice {};

// The library within the tool holds its record manager for ever, while the tests of qlx99.dll need
// none to be loaded.
TEST(Tool, WorksInAProcessOfItsOwn) {
  EXPECT_EQ(testkit::Process({"--gtest_brief=1", "--gtest_shuffle", "--gtest_filter=Qlx*"}).Wait(),
            0);
}

const struct {
  const char* command;
  int code;
  const char* part;  // of what it prints: when it is done, on stdout, and otherwise on stderr
} kOutcomes[] = {
    {"--version", kDone, "qlx "},
    {"-h", kDone, "qlx letter 12345678"},
    {"call|BLesenDLL|M |12345678", kDone,
     "kind: local\nresult: -1  (-1: delivered)\nrecord: 4711|25|0|815\n   1  addressNumber       "
     "  4711\n"},
    {"call|UserInit", kDone, "kind: local\nresult: 5  (number of users)\n"},
    // Two parties, and no dialog allowed: nothing is written.
    {"call|BLesenDLL|G |23001124||1", kDone,
     "kind: local\nresult: 0  (-1: delivered)\nrecord: none; the buffer was left as it was\n"},
    {"call|--json|BLesenDLL|M |12345678", kDone,
     R"({"export":"BLesenDLL","kind":"local","result":-1,"record":"4711|25|0|815","fields":)"
     R"({"addressNumber":"4711","relationCode":"25","always0":"0","linkNumber":"815"}})"
     "\n"},
    // Without date and kind: the result is 0, and the record is whole all the same.
    {"call|--json|WVNext|24000402|1", kDone, R"("result":0,"record":"|)"},
    {"call|SLesenDLL|99999999", kDone, "go without names"},
    {"call|WVNext|24000317|-5", kDone, "(§ 4 KSchG)"},
    {"call|GetDocuRoot|260", kDone, "Dokumente\n   1  path "},
    {"followups|24000402", kDone, "Versorgungsausgleich klären"},  // without date and kind
    {"office|check", kDone, "ZTCASE.KRV"},
    {"office|show|ztablag", kDone, "id: 2\nmark: Kö/08\ndate: 30.06.1999\n\nid: 3\nmark:\n"},
    {"office|show|ztbank|--csv", kDone,
     "\n5,4901,\"Anderkonto, Rheinische Kreditbank\",370 700 60,"},
    {"office|show|ZTCASE.KRV", kDone, "\n\nid: 5\ncaseNumber: 98010042\nuserId: 1\n"},
    {"followups|99999999", kFailed, "Case 99999999 has no follow-ups"},
    {"letter|99999999", kFailed, "There is no case 99999999"},
    {"letter|25000001", kFailed, "None of the 0 parties of case 25000001 is in the role \"M \""},
    {"letter|12345678|--role|§G", kFailed, "None of the 7 parties"},
    {"letter|98010042|--role|G", kFailed, "Address 4806, of Roßbach, has no place"},
    {"letter|98010042|--no-dialog", kFailed, "A choice was not made"},
    {"bogus", kWrongUsage, "There is no command \"bogus\". `qlx --help` lists all.\n"},
    {"-x", kWrongUsage, "There is no option \"-x\". `qlx --help` lists all.\n"},
    {"foll|12345678", kWrongUsage, "Did you mean \"followups\"?"},
    {"letter||--role|M", kWrongUsage, "CASE: is empty"},
    {"letter|12345678x", kWrongUsage, "CASE: has more than the 8 characters of a case number"},
    {"followups|12345678  ", kDone, "Verjährung prüfen"},
    {"letter|--role||12345678", kWrongUsage, "--role: is empty"},
    {"office|create| ", kWrongUsage, "DIR: is empty"},
    {"call|Blubb", kWrongUsage, "There is no export \"Blubb\". There are:\n  GetDocuRoot length\n"},
    {"call|SLesenDLL|1|2", kWrongUsage, "takes 1 argument (caseNumber); you gave 2. The buffer "},
    {"call|WVInit|Şahin", kFailed, "\"Ş\""},
    {"call|WVInit|\xE2\x82", kFailed, "not UTF-8"},
    {"call|GetDocuRoot|x", kWrongUsage, "\"x\" is not a whole number"},
    {"office|show|ZTNIX", kWrongUsage, "There are: ZTUSER ZTTCASE"},
    {"office|create|nowhere|--cases|0", kWrongUsage, "--cases"},
};

TEST_F(QlxCommands, SayWhatTheyDeliverOrWhyTheyDoNot) {
  const std::string numbersBefore = Qlx("office|show|zthisto").out;
  for (const auto& [command, code, part] : kOutcomes) {
    SCOPED_TRACE(command);
    const Outcome outcome = Qlx(command);
    EXPECT_EQ(outcome.code, code);
    EXPECT_THAT(code == kDone ? outcome.out : outcome.err, HasSubstr(part));
    EXPECT_EQ(code == kDone ? outcome.err : outcome.out, "");
  }
  const Outcome again = Qlx("office|create|" + Folder());
  EXPECT_EQ(again.code, kFailed);
  EXPECT_THAT(again.err, HasSubstr("Nothing was changed"));
  EXPECT_EQ(Qlx("office|show|ZTHISTO.KRV").out, numbersBefore) << "of refused letters";
  EXPECT_THAT(Qlx("office|create|" + Folder() + "/a b/" + std::string(300, 'x')).err,
              StartsWith("qlx: The "));
  std::ostringstream full;
  full.setstate(std::ios::badbit);
  EXPECT_EQ(office::Run({"--help"}, full, full), kFailed);
}

TEST_F(QlxCommands, TellAScriptThatNothingWasDelivered) {
  const struct {
    const char* command;
    const char* out;
    const char* err;
  } rows[] = {
      {"BLesenDLL|G |23001124||1", R"("result":0,"record":null,"fields":null})", ""},
      {"SLesenDLL|99999999", R"("result":-1,"record":"0|","fields":null})", ""},
      {"ALesenDLL||99999", R"("linkText":"","relationDesignation":""}})", ""},
      {"WVNew|12345678|1|morgen|1|0|0|x", R"("result":0})",
       "Systemmeldung !\nGeben Sie bitte ein Datum an !\n"},
  };
  for (const auto& [command, out, err] : rows) {
    const Outcome outcome = Qlx(std::string("call|--json|--no-dialog|") + command);
    EXPECT_EQ(outcome.code, kFailed) << command;
    EXPECT_THAT(outcome.out, EndsWith(std::string(out) + "\n"));
    EXPECT_EQ(outcome.err, err);
  }
}

TEST_F(QlxCommands, LettersSpeakToWhomTheyAreFor) {
  qlx99::tests::User user;
  user.TakesTheSelectedFromNowOn();
  const struct {
    const char* caseNumber;
    const char* role;
    const char* begin;
    const char* part;
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
  for (const auto& [caseNumber, role, begin, part] : rows) {
    EXPECT_THAT(Qlx(std::string("letter|") + caseNumber + "|--role|" + role).out,
                AllOf(StartsWith(begin), HasSubstr(part)));
  }
}

TEST_F(QlxCommands, FollowUpsStandInTheOrderInWhichTheyAreDue) {
  EXPECT_EQ(
      Qlx("followups|12345678").out,
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
}

// Nobody would miss a deadline that is left out of the list.
TEST_F(QlxCommands, ShowWhatIsThereWhateverItsTextsHold) {
  using namespace office;
  const Export& write = ExportNamed("WVNew");
  ASSERT_EQ(CallExport(write, {"25000001", "2", "15.05.2024", "1", "0", "0", "a|b"}).result, -1);
  const auto followUps = qlx99::LayoutOf<qlx99::FollowUpRecord>();
  std::string followUp = BlankRecord(followUps);
  SetField(qlx99::FollowUpRecord::caseId, "8", followUp);
  followUp[qlx99::FollowUpRecord::text.offset] = '\0';  // which ends what the library delivers
  const auto cases = qlx99::LayoutOf<qlx99::CaseRecord>();
  std::string oneCase = BlankRecord(cases);
  SetField(qlx99::CaseRecord::id, "77", oneCase);
  SetField(qlx99::CaseRecord::caseNumber, "77000001", oneCase);
  oneCase[qlx99::CaseRecord::rubrum.offset] = '|';
  oneCase.replace(qlx99::CaseRecord::shortCode.offset, 4, "\x1B[2J");
  oneCase.replace(qlx99::CaseRecord::currency.offset, 3, "DM\0", 3);
  const double smallest = 5e-324;
  std::memcpy(&oneCase[qlx99::CaseRecord::amount.offset], &smallest, sizeof smallest);
  SetField(qlx99::CaseRecord::text40, "wegen \"Nichts\"", oneCase);
  const RecordManager manager;
  TableFile(manager, Folder(), followUps).Insert(followUp);
  TableFile(manager, Folder(), cases).Insert(oneCase);

  EXPECT_THAT(Qlx("followups|25000001").out,
              AllOf(HasSubstr("\n?                  cannot be told apart: ||0|"),
                    HasSubstr("\n15.05.2024  Frist  a|b ")));
  EXPECT_THAT(Qlx("letter|77000001").err, HasSubstr("Case 77000001 cannot be read"));
  EXPECT_THAT(Qlx("call|SLesenDLL|77000001").out, HasSubstr("|\\x1B[2J|"));
  EXPECT_THAT(Qlx("call|--json|SLesenDLL|77000001").out, HasSubstr("|\\u001b[2J|"));
  EXPECT_THAT(Qlx("office|show|ztcase|--csv").out,
              AllOf(HasSubstr(",\"wegen \"\"Nichts\"\"\",DM\n"), HasSubstr("\\x1B[2J"),
                    HasSubstr(std::string(300, '0'))));
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
    const office::DeliveredRecord record(office::ExportNamed(from), office::Encode(text));
    ASSERT_EQ(record.IsComplete(), expected != nullptr);
    if (expected != nullptr) {
      EXPECT_EQ(record[field], expected);
    }
  }
}

}  // namespace
