// The terminal that stands in for a screen on a host without Windows.
#include <gmock/gmock.h>

#include <iostream>
#include <sstream>
#include <utility>

#include "office/command_line.h"
#include "platform/windows_api.h"
#include "tests/office/sample_office.h"

namespace {

using testing::HasSubstr;

class QlxAtTheTerminal : public SampleOffice {
 protected:
  ~QlxAtTheTerminal() override {
    std::cin.rdbuf(keys_);
    std::cin.clear();
    std::cerr.rdbuf(display_);
  }

  // What a command does for somebody who types `answers`.
  Outcome Typing(const std::string& answers, const std::string& command) {
    typed_.str(answers);
    typed_.clear();
    std::cin.clear();
    return Qlx(command);
  }

  std::ostringstream shown;

 private:
  std::istringstream typed_;
  std::streambuf* keys_ = std::cin.rdbuf(typed_.rdbuf());
  std::streambuf* display_ = std::cerr.rdbuf(shown.rdbuf());
};

TEST_F(QlxAtTheTerminal, TakesTheLineOfTheNumberAndAsksAgain) {
  const std::pair<const char*, const char*> rows[] = {
      {"\n", "Spedition GmbH"}, {" 2 \r\n", "Karl-Heinz"}, {"4\nx\n-1\n2\n", "Karl-Heinz"}};
  for (const auto& [answers, addressee] : rows) {
    EXPECT_THAT(Typing(answers, "letter|23001124|--role|G").out, HasSubstr(addressee)) << answers;
  }
  EXPECT_THAT(Typing("2\n2", "letter|23001124").out, HasSubstr("Kern-Häfele"));
  EXPECT_THAT(
      shown.str(),
      testing::StartsWith(
          "\nGegner auswählen\nAktennummer: 23001124  \n"
          "Rubrum: Rh. Maschinenbau ./. Hövelmann u. a.       \nBeteiligte zur Akte:\n"
          "> 1  Gegner                                                       Hövelmann Spedition "
          "GmbH & Co. KG\n"
          "  2  Gegner                        Karl-Heinz                     Hövelmann\n"
          "Nummer (Eingabe = markierte Zeile, 0 = Abbruch): "));
  EXPECT_THAT(shown.str(), HasSubstr("Diese Nummer steht nicht zur Wahl."));
  // Each dialog has columns of its own.
  EXPECT_THAT(shown.str(), HasSubstr("\n  3  Böß                 Friedhelm\n"));
  EXPECT_THAT(shown.str(),
              HasSubstr("\n  2  Bergische Handelsbank, Filiale Burscheid          771 002 "));
  MessageBoxW(nullptr, u"a\x1B[2J!", u"Über", MB_OK);
  EXPECT_THAT(shown.str(), testing::EndsWith("\nÜber\na [2J!\n"));
}

// Whichever dialog it is that gets no answer.
TEST_F(QlxAtTheTerminal, TakesTheEndOfInputForNoChoiceAndUsesUpNoNumber) {
  std::string nonsense;
  for (int i = 0; i < 1000; ++i) nonsense += "99\n";
  const std::string numbers = Qlx("office|show|ZTHISTO").out;
  const std::pair<std::string, const char*> rows[] = {
      {"", "letter|23001124|--role|G"}, {"0\n", "letter|23001124|--role|G"},
      {"", "letter|23001124"},          {"1\n", "letter|23001124"},
      {"", "letter|98010042"},          {nonsense, "letter|98010042"}};
  for (const auto& [answers, command] : rows) {
    const Outcome letter = Typing(answers, command);
    EXPECT_EQ(letter.code, office::kFailed);
    EXPECT_THAT(letter.err, HasSubstr(", so there is no letter.")) << command;
  }
  EXPECT_EQ(Qlx("office|show|ZTHISTO").out, numbers);
  EXPECT_THAT(shown.str(), HasSubstr("0 = keine Wahl, es gilt die erste Zeile): "));
}

}  // namespace
