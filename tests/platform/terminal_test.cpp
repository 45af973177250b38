// The terminal that stands in for a screen on a host without Windows.
#include <iostream>
#include <sstream>
#include <utility>

#include "addresses/bank_connection_file.h"
#include "addresses/contact_person_file.h"
#include "office/command_line.h"
#include "platform/screen.h"
#include "support/export_test.h"
#include "tests/office/sample_office.h"

namespace qlx99::tests {
namespace {

using testing::HasSubstr;

// What a call gives to somebody who types `answers`.
template <class Call>
auto Typing(const std::string& answers, const Call& call) {
  std::istringstream typed(answers);
  std::streambuf* const keys = std::cin.rdbuf(typed.rdbuf());
  std::cin.clear();
  auto outcome = call();
  std::cin.rdbuf(keys);
  std::cin.clear();
  return outcome;
}

// What is shown, while it exists.
class Display {
 public:
  Display() : before_(std::cerr.rdbuf(shown_.rdbuf())) {}
  ~Display() { std::cerr.rdbuf(before_); }
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  std::string Shown() const { return shown_.str(); }

 private:
  std::ostringstream shown_;
  std::streambuf* before_;
};

class Terminal : public ExampleOfficeTest {
 protected:
  Terminal() { platform::SetScreen(nullptr); }

  Display display;
};

TEST_F(Terminal, TakesTheLineOfTheNumberAndAsksAgainButNotForEver) {
  for (const std::string bank :
       {"number: 201, bankName: Volksbank", "number: 202, bankName: \x1B[2J"}) {
    office.Has<BankConnectionRecord>("addressNumber: 4711, accountNumber: 8, " + bank);
  }
  std::string nonsense;
  for (int i = 0; i < 1000; ++i) nonsense += "99\n";
  const std::pair<std::string, const char*> rows[] = {
      {"\n", "Sparkasse"}, {" 2 \r\n", "Volksbank"},       {"0\n", "Sparkasse"},
      {"", "Sparkasse"},   {"4\nx\n-1\n2\n", "Volksbank"}, {nonsense, "Sparkasse"}};
  for (const auto& [answers, bank] : rows) {
    const auto read = [&](char* b) { return library->ALesenDLL("", "4711", b, ""); };
    EXPECT_THAT(Typing(answers, [&] { return OutcomeOf(read); }), HasSubstr(bank)) << answers;
  }
  EXPECT_THAT(
      display.Shown(),
      testing::StartsWith("\nBankverbindung auswählen\n"
                          "Zum ausgewählten Adressant wurden mehrere Bankverbindungen angelegt ! \n"
                          "Bitte wählen Sie eine Bankverbindung aus.\n"
                          "> 1  Sparkasse                47 11\n"
                          "  2  Volksbank                8\n"
                          "  3   [2J                     8\n"
                          "Nummer (Eingabe = markierte Zeile, 0 = Abbruch): "));
  EXPECT_THAT(display.Shown(), HasSubstr("Diese Nummer steht nicht zur Wahl."));
}

TEST_F(Terminal, ShowsMessagesAndWhatStandsBesideLabels) {
  const auto read = [&](char* b) { return library->BLesenDLL("  ", "12345678", "", "", b); };
  Typing("0\n", [&] { return OutcomeOf(read); });
  EXPECT_THAT(display.Shown(), HasSubstr("\nAktennummer: 12345678  \nRubrum: Müller ./. Schmidt"));
  office.IsNotConfigured("DataRoot");
  EXPECT_EQ(library->UserInit(), 0);
  EXPECT_THAT(display.Shown(), testing::EndsWith("\nSystemmeldung !\nDatenpfad nicht gefunden !\n "
                                                 "User können nicht übernommen werden ! \n"));
}

class QlxAtTheTerminal : public SampleOffice {};

// Whichever dialog it is that gets no answer.
TEST_F(QlxAtTheTerminal, TakesTheEndOfInputForNoChoiceAndUsesUpNoNumber) {
  const Display display;
  constexpr auto kNonsense = "x\nx\nx\nx\nx\nx\nx\nx\nx\nx\nx\n";
  const std::string numbers = Qlx("office|show|ZTHISTO").out;
  const std::pair<const char*, const char*> rows[] = {{"letter|23001124|--role|G", ""},
                                                      {"letter|23001124", ""},
                                                      {"letter|23001124", "1\n"},
                                                      {"letter|98010042", ""},
                                                      {"letter|98010042", kNonsense}};
  for (const auto& [command, answers] : rows) {
    const Outcome letter = Typing(answers, [command = command] { return Qlx(command); });
    EXPECT_EQ(letter.code, office::kFailed);
    EXPECT_THAT(letter.err, HasSubstr(", so there is no letter.")) << command;
  }
  EXPECT_EQ(Qlx("office|show|ZTHISTO").out, numbers);
  EXPECT_THAT(Typing("2\n2", [] { return Qlx("letter|23001124"); }).out, HasSubstr("Sehr geehrte"));
}

}  // namespace
}  // namespace qlx99::tests
