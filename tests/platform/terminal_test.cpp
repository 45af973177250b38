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

// What somebody types, as long as it exists.
class FedInput {
 public:
  explicit FedInput(const std::string& typed) : typed_(typed) { std::cin.clear(); }
  ~FedInput() {
    std::cin.rdbuf(keys_);
    std::cin.clear();
  }
  FedInput(const FedInput&) = delete;
  FedInput& operator=(const FedInput&) = delete;

 private:
  std::istringstream typed_;
  std::streambuf* keys_ = std::cin.rdbuf(typed_.rdbuf());
};

class Terminal : public ExampleOfficeTest {
 protected:
  Terminal() : display_(std::cerr.rdbuf(shown_.rdbuf())) { platform::SetScreen(nullptr); }
  ~Terminal() override { std::cerr.rdbuf(display_); }

  // What the call gives to somebody who types `answers`.
  std::string Typing(const std::string& answers, const std::function<std::int32_t(char*)>& call) {
    const FedInput input(answers);
    return OutcomeOf(call);
  }

  std::string Shown() const { return shown_.str(); }

 private:
  std::ostringstream shown_;
  std::streambuf* display_;
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
    EXPECT_THAT(Typing(answers, [&](char* b) { return library->ALesenDLL("", "4711", b, ""); }),
                HasSubstr(bank))
        << answers;
  }
  EXPECT_THAT(
      Shown(),
      testing::StartsWith("\nBankverbindung auswählen\n"
                          "Zum ausgewählten Adressant wurden mehrere Bankverbindungen angelegt ! \n"
                          "Bitte wählen Sie eine Bankverbindung aus.\n"
                          "> 1  Sparkasse                47 11\n"
                          "  2  Volksbank                8\n"
                          "  3   [2J                     8\n"
                          "Nummer (Eingabe = markierte Zeile, 0 = keine Wahl, es gilt die erste "
                          "Zeile): "));
  EXPECT_THAT(Shown(), HasSubstr("Diese Nummer steht nicht zur Wahl."));
}

TEST_F(Terminal, ShowsMessagesAndWhatStandsBesideLabels) {
  Typing("0\n", [&](char* b) { return library->BLesenDLL("  ", "12345678", "", "", b); });
  EXPECT_THAT(Shown(),
              testing::AllOf(HasSubstr("\nAktennummer: 12345678  \nRubrum: Müller ./. Schmidt"),
                             testing::EndsWith("(Eingabe = markierte Zeile, 0 = Abbruch): ")));
  office.IsNotConfigured("DataRoot");
  EXPECT_EQ(library->UserInit(), 0);
  EXPECT_THAT(Shown(), testing::EndsWith("\nSystemmeldung !\nDatenpfad nicht gefunden !\n "
                                         "User können nicht übernommen werden ! \n"));
}

class QlxAtTheTerminal : public SampleOffice {
 protected:
  ~QlxAtTheTerminal() override { std::cerr.rdbuf(display_); }

 private:
  std::ostringstream shown_;
  std::streambuf* display_ = std::cerr.rdbuf(shown_.rdbuf());
};

// Whichever dialog it is that gets no answer.
TEST_F(QlxAtTheTerminal, TakesTheEndOfInputForNoChoiceAndUsesUpNoNumber) {
  constexpr auto kNonsense = "x\nx\nx\nx\nx\nx\nx\nx\nx\nx\nx\n";
  const std::string numbers = Qlx("office|show|ZTHISTO").out;
  const std::pair<const char*, const char*> rows[] = {{"letter|23001124|--role|G", ""},
                                                      {"letter|23001124", ""},
                                                      {"letter|23001124", "1\n"},
                                                      {"letter|98010042", ""},
                                                      {"letter|98010042", kNonsense}};
  for (const auto& [command, answers] : rows) {
    const FedInput input(answers);
    const auto letter = Qlx(command);
    EXPECT_EQ(letter.code, office::kFailed);
    EXPECT_THAT(letter.err, HasSubstr(", so there is no letter.")) << command;
  }
  EXPECT_EQ(Qlx("office|show|ZTHISTO").out, numbers);
  const FedInput input("2\n2");
  EXPECT_THAT(Qlx("letter|23001124").out, HasSubstr("Sehr geehrte"));
}

}  // namespace
}  // namespace qlx99::tests
